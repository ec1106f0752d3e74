// Parts of a document other than page contents, read back with qpdf.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "document/comments.h"
#include "document/layers.h"
#include "document/page_background.h"
#include "document/viewport.h"
#include "engine/library.h"
#include "engine/page.h"
#include "tests/support/saved_document.h"

namespace hdi {
namespace {

std::string References(const std::vector<uint32_t>& numbers) {
  std::string array = "[ ";
  for (const uint32_t number : numbers) array += std::to_string(number) + " 0 R ";
  return array + "]";
}

class DocumentTest : public testing::Test {
 protected:
  uint32_t NewPage() { return document_.NewPage(99, 10, 10)->ObjectNumber(); }

  engine::Library library_;
  engine::Document document_;
};

TEST_F(DocumentTest, ListsGroupsByFirstUseAndOrdersThemByPageAndName) {
  Layers layers(document_);
  const uint32_t first = NewPage();
  const uint32_t second = NewPage();
  ASSERT_LT(first, second);
  const uint32_t b = layers.GetLayerGroup(first, u"B");
  const uint32_t a = layers.GetLayerGroup(first, u"A");
  const uint32_t otherC = layers.GetLayerGroup(second, u"C");
  const uint32_t otherA = layers.GetLayerGroup(second, u"A");
  // Surrogates sort before the private use area as 16-bit units, though not as characters.
  const uint32_t privateUse = layers.GetLayerGroup(first, u"\uE000");
  const uint32_t surrogate = layers.GetLayerGroup(first, u"\U0001F600");
  EXPECT_EQ(layers.GetLayerGroup(first, u"B"), b);
  EXPECT_EQ(layers.GetLayerGroup(second, u"A"), otherA);
  EXPECT_EQ(layers.GetLayerGroup(first, std::u16string_view(u"A\0hidden", 8)), a);
  EXPECT_EQ(layers.GetLayerGroup(first, u""), 0U);

  engine::SavedDocument saved(document_);
  auto properties = saved.Catalog().getKey("/OCProperties");
  EXPECT_EQ(properties.unparse(),
            "<< /D << /OFF [ ] /Order " + References({a, b, surrogate, privateUse, otherA, otherC}) +
                " >> /OCGs " + References({b, a, otherC, otherA, privateUse, surrogate}) +
                " /PageMode /UseOC >>");
  EXPECT_FALSE(saved.Catalog().hasKey("/PageMode"));
  EXPECT_EQ(saved.Object(a).unparseResolved(), "<< /Name (A) /Type /OCG >>");
  EXPECT_EQ(saved.Object(otherA).unparseResolved(), "<< /Name (A) /Type /OCG >>");
  EXPECT_EQ(saved.Object(surrogate).unparseResolved(), "<< /Name <feffd83dde00> /Type /OCG >>");
}

TEST_F(DocumentTest, CommentsAreSquaresWithTextStrings) {
  auto page = document_.NewPage(0, 10, 10);
  WriteShxComment(*page, u"a\u2022\n", {100, 200, 300, 400}, 68, 0.12F, 0, 0);
  WriteShxComment(*page, u"\u03A9\U0001F600\xD800", {-100, 200, 300, 400}, 0xFFFFFFFF, 0.5F, 14, 48);
  WriteShxComment(*page, std::u16string_view(u"a\0b", 3), {0, 0, 0, 0}, 0, 1, 0, 0);
  page = nullptr;
  EXPECT_EQ(engine::SavedDocument(document_).Page(0).getKey("/Annots").unparse(),
            "[ << /Border [ 0 0 0 ] /Contents <61800a> /F 68 /Rect [ 12 36 24 48 ] /Subtype /Square "
            "/T (Orvane SHX Text) /Type /Annot >> "
            "<< /Border [ 0 0 0 ] /Contents <feff03a9d83dde00d800> /F -1 /Rect [ -36 198 114 248 ] "
            "/Subtype /Square /T (Orvane SHX Text) /Type /Annot >> "
            "<< /Border [ 0 0 0 ] /Contents (a) /F 0 /Rect [ 0 0 0 0 ] /Subtype /Square "
            "/T (Orvane SHX Text) /Type /Annot >> ]");
}

TEST_F(DocumentTest, BackgroundIsBelowTheContents) {
  const auto page = document_.NewPage(0, 100, 200);
  SetPageBackground(*page, 255, 0, 128);  // no effect without contents
  EXPECT_FALSE(page->HasContents());
  page->SetContents(nullptr, "0 0 m");
  SetPageBackground(*page, 256, 0, 128);
  SetPageBackground(*page, 255, 256, 128);
  SetPageBackground(*page, 255, 0, 256);
  SetPageBackground(*page, 255, 0, 128);
  page->WrapContents("q ", " Q");
  SetPageBackground(*page, 0, 0, 0);
  const std::vector<std::string> expected = {"q 0 0 0 rg 1 0 0 1 0 0 cm  0 0 100 200 re f Q", "q ",
                                             "q 1 0 0.501961 rg 1 0 0 1 0 0 cm  0 0 100 200 re f Q", "0 0 m",
                                             " Q"};
  EXPECT_EQ(engine::SavedDocument(document_).PageContents(0), expected);
}

TEST_F(DocumentTest, EachPageHasItsOwnMeasure) {
  const std::pair<float, const char*> cases[] = {
      {8.333333F, "8.333333"},
      {8.333333F, "8.333333"},
      {std::nanf(""), "0"},
      {-std::numeric_limits<float>::infinity(), "-9223371500000000000"},
      {1e30F, "9223371500000000000"}};
  for (const auto& [scale, factor] : cases) {
    const auto page = document_.NewPage(99, 10, 10);
    SetPageViewport(*page, 7);
    SetPageViewport(*page, scale);
  }
  engine::SavedDocument saved(document_);
  for (size_t i = 0; i < std::size(cases); ++i) {
    EXPECT_EQ(saved.Page(i).getKey("/VP").unparse(),
              "[ << /BBox [ 0 0 0 0 ] /Measure << /A [ << /C 1 /U ( ) >> ] /D [ << /C 1 /U ( ) >> ] /R ( ) "
              "/Subtype /RL /Type /Measure /X [ << /C " +
                  std::string(cases[i].second) + " /U ( ) >> ] >> /Type /Viewport >> ]");
  }
}

}  // namespace
}  // namespace hdi
