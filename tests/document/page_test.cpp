// What a page says to its reader beside its contents, as another library reads it back.
#include "engine/page.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "document/comments.h"
#include "document/viewport.h"
#include "tests/support/saved_document.h"

namespace hdi {
namespace {

class PageTest : public testing::Test {
 protected:
  engine::Library library_;
  engine::Document document_;
};

TEST_F(PageTest, CommentsAreSquaresWithTextStrings) {
  auto page = document_.NewPage(0, 10, 10);
  WriteShxComment(*page, u"a\t\u2022\n", {100, 200, 300, 400}, 0, 0.12F, 0, 0);
  WriteShxComment(*page, u"\u03A9\U0001F600\xD800", {-100, 200, 300, 400}, 0xFFFFFFFF, 0.5F, 14, 48);
  WriteShxComment(*page, std::u16string_view(u"a\0b", 3), {0, 0, 0, 0}, 68, 1, 0, 0);
  page->AddLinkAnnotation({1, 2, 3, 4}, "http://\xC3\xA9");
  page = nullptr;

  engine::SavedDocument saved(document_);
  auto annotations = saved.Page(0).getKey("/Annots");
  EXPECT_FALSE(annotations.isIndirect());
  auto items = annotations.getArrayAsVector();
  ASSERT_EQ(items.size(), 4U);
  EXPECT_FALSE(items[0].isIndirect());
  auto words = items[0].getKey("/Contents");
  EXPECT_EQ(words.getStringValue(), "a\t\x80\n");
  items[0].removeKey("/Contents");
  EXPECT_EQ(items[0].unparse(),
            "<< /Border [ 0 0 0 ] /F 0 /Rect [ 12 36 24 48 ] /Subtype /Square /T (Orvane SHX Text) "
            "/Type /Annot >>");
  EXPECT_EQ(items[1].getKey("/Contents").getStringValue(),
            std::string("\xFE\xFF\x03\xA9\xD8\x3D\xDE\x00\xD8\x00", 10));
  EXPECT_EQ(items[1].getKey("/F").unparse(), "-1");
  EXPECT_EQ(items[1].getKey("/Rect").unparse(), "[ -36 198 114 248 ]");
  EXPECT_EQ(items[2].getKey("/Contents").getStringValue(), "a");
  EXPECT_EQ(items[2].getKey("/F").unparse(), "68");
  EXPECT_EQ(items[3].getKey("/Subtype").unparse(), "/Link");
  EXPECT_EQ(items[3].getKey("/A").getKey("/URI").getStringValue(), "http://\xC3\xA9");
}

TEST_F(PageTest, EveryPageHasItsOwnMeasure) {
  for (const float scale :
       {8.333333F, 8.333333F, std::nanf(""), -std::numeric_limits<float>::infinity(), 1e30F}) {
    const auto page = document_.NewPage(99, 10, 10);
    SetPageViewport(*page, 7);
    SetPageViewport(*page, scale);
  }
  engine::SavedDocument saved(document_);
  auto viewports = saved.Page(0).getKey("/VP");
  EXPECT_EQ(viewports.unparse(),
            "[ << /BBox [ 0 0 0 0 ] /Measure << /A [ << /C 1 /U ( ) >> ] /D [ << /C 1 /U ( ) >> ] "
            "/R ( ) /Subtype /RL /Type /Measure /X [ << /C 8.333333 /U ( ) >> ] >> /Type /Viewport >> ]");
  EXPECT_EQ(saved.Page(1).getKey("/VP").unparse(), viewports.unparse());
  const auto factor = [&](size_t page) {
    auto measure = saved.Page(page).getKey("/VP").getArrayItem(0).getKey("/Measure");
    return measure.getKey("/X").getArrayItem(0).getKey("/C").unparse();
  };
  EXPECT_EQ(factor(2), "0");
  EXPECT_EQ(factor(3), "-9223371500000000000");
  EXPECT_EQ(factor(4), "9223371500000000000");
}

}  // namespace
}  // namespace hdi
