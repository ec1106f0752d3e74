// Layers, as the catalog of the saved document lists them.
#include "document/layers.h"

#include <gtest/gtest.h>

#include "engine/page.h"
#include "tests/support/saved_document.h"

namespace hdi {
namespace {

class LayersTest : public testing::Test {
 protected:
  // The pages' object numbers.
  uint32_t NewPage() { return document_.NewPage(99, 10, 10)->ObjectNumber(); }

  static std::vector<uint32_t> Numbers(QPDFObjectHandle array) {
    std::vector<uint32_t> numbers;
    for (auto& item : array.getArrayAsVector()) {
      EXPECT_TRUE(item.isIndirect());
      numbers.push_back(static_cast<uint32_t>(item.getObjectID()));
    }
    return numbers;
  }

  engine::Library library_;
  engine::Document document_;
  Layers layers_{document_};
};

TEST_F(LayersTest, GroupsAreListedByFirstUseAndShownByPageAndName) {
  const uint32_t first = NewPage();
  const uint32_t second = NewPage();
  ASSERT_LT(first, second);
  const uint32_t b = layers_.GetLayerGroup(first, u"B");
  const uint32_t a = layers_.GetLayerGroup(first, u"A");
  const uint32_t otherC = layers_.GetLayerGroup(second, u"C");
  const uint32_t otherA = layers_.GetLayerGroup(second, u"A");
  // A surrogate is a lower unit than the private use area, whatever the characters.
  const uint32_t privateUse = layers_.GetLayerGroup(first, u"\uE000");
  const uint32_t surrogate = layers_.GetLayerGroup(first, u"\U0001F600");
  EXPECT_EQ(layers_.GetLayerGroup(first, u"B"), b);
  EXPECT_EQ(layers_.GetLayerGroup(second, u"A"), otherA);
  EXPECT_EQ(layers_.GetLayerGroup(first, std::u16string_view(u"A\0hidden", 8)), a);
  EXPECT_EQ(layers_.GetLayerGroup(first, u""), 0U);

  engine::SavedDocument saved(document_);
  auto properties = saved.Catalog().getKey("/OCProperties");
  EXPECT_FALSE(properties.isIndirect());
  EXPECT_EQ(properties.getKeys(), (std::set<std::string>{"/D", "/OCGs", "/PageMode"}));
  EXPECT_EQ(properties.getKey("/PageMode").unparse(), "/UseOC");
  EXPECT_FALSE(saved.Catalog().hasKey("/PageMode"));
  EXPECT_EQ(Numbers(properties.getKey("/OCGs")),
            (std::vector<uint32_t>{b, a, otherC, otherA, privateUse, surrogate}));
  auto configuration = properties.getKey("/D");
  EXPECT_FALSE(configuration.isIndirect());
  EXPECT_EQ(configuration.getKeys(), (std::set<std::string>{"/OFF", "/Order"}));
  EXPECT_EQ(configuration.getKey("/OFF").unparse(), "[ ]");
  EXPECT_EQ(Numbers(configuration.getKey("/Order")),
            (std::vector<uint32_t>{a, b, surrogate, privateUse, otherA, otherC}));

  EXPECT_EQ(saved.Object(a).unparseResolved(), "<< /Name (A) /Type /OCG >>");
  EXPECT_EQ(saved.Object(otherA).unparseResolved(), "<< /Name (A) /Type /OCG >>");
  EXPECT_EQ(saved.Object(surrogate).getKey("/Name").getStringValue(),
            std::string("\xFE\xFF\xD8\x3D\xDE\x00", 6));
}

TEST_F(LayersTest, ADocumentWithoutLayersListsNone) {
  EXPECT_EQ(layers_.GetLayerGroup(NewPage(), u""), 0U);
  EXPECT_FALSE(engine::SavedDocument(document_).Catalog().hasKey("/OCProperties"));
}

// Backwards through pages and names, which is the dearest way.
TEST_F(LayersTest, ManyLayersKeepTheirOrder) {
  constexpr int kCount = 3000;
  const std::vector<uint32_t> pages = {NewPage(), NewPage()};
  const auto name = [](int i) { return std::u16string{u'n', static_cast<char16_t>(0x100 + i)}; };
  std::vector<uint32_t> expected;
  for (const uint32_t page : {pages[1], pages[0]}) {
    for (int i = kCount; i-- > 0;) expected.insert(expected.begin(), layers_.GetLayerGroup(page, name(i)));
  }
  for (int i = 0; i < kCount; ++i) {
    EXPECT_EQ(layers_.GetLayerGroup(pages[i % 2], name(i)),
              expected[static_cast<size_t>(i + i % 2 * kCount)]);
  }
  engine::SavedDocument saved(document_);
  EXPECT_EQ(Numbers(saved.Catalog().getKey("/OCProperties").getKey("/D").getKey("/Order")), expected);
}

}  // namespace
}  // namespace hdi
