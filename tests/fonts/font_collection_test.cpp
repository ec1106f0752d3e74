// Faces in intact and broken collections.
#include "fonts/font_collection.h"

#include <gtest/gtest.h>

#include "tests/support/font_files.h"

namespace hdi {
namespace {

using font_files::BigEndian;
using font_files::Collection;
using font_files::NamedFont;
using font_files::Utf16BigEndian;

std::vector<uint8_t> Bytes(std::string_view text) { return {text.begin(), text.end()}; }

std::optional<int32_t> Find(std::string_view collection, std::u16string_view face) {
  // An exactly sized copy, so that a sanitizer detects reads past the end.
  return FindCollectionMember(Bytes(collection), face);
}

const std::string kCollection = Collection(
    {NamedFont({{3, 2, Utf16BigEndian(u"Beta")}, {1, 1, "Alpha"}, {3, 1, Utf16BigEndian(u"\u6587\u6cc9")}}),
     NamedFont({{3, 4, Utf16BigEndian(u"Gamma Bold")}, {3, 1, Utf16BigEndian(u"Gamma")}}),
     NamedFont({{1, 1, "Gamma"}, {3, 1, Utf16BigEndian(u"Beta")}})});

TEST(FontCollection, FindsTheFirstMemberWithTheFamilyName) {
  EXPECT_EQ(Find(kCollection, u"Alpha"), 0);
  EXPECT_EQ(Find(kCollection, u"\u6587\u6cc9"), 0);
  EXPECT_EQ(Find(kCollection, u"Gamma"), 1);
  EXPECT_EQ(Find(kCollection, u"Beta"), 2);  // the first member has it with another name ID
  EXPECT_EQ(Find(kCollection, u"Gamma Bold"), std::nullopt);
  EXPECT_EQ(Find(kCollection, u"alpha"), std::nullopt);
  EXPECT_EQ(Find(Collection({}), u"Alpha"), std::nullopt);
  EXPECT_EQ(Find(Collection({NamedFont({}), NamedFont({{1, 1, "Alpha"}})}), u"Alpha"), 1);
}

TEST(FontCollection, FindsMembersOfAnInstalledCollection) {
  const std::string bytes = font_files::Read("/usr/share/fonts/truetype/wqy/wqy-zenhei.ttc");
  EXPECT_EQ(Find(bytes, u"WenQuanYi Zen Hei"), 0);
  EXPECT_EQ(Find(bytes, u"WenQuanYi Zen Hei Mono"), 1);
  EXPECT_EQ(Find(bytes, u"\u6587\u6cc9\u9a5b\u7b49\u5bec\u6b63\u9ed1"), 1);
}

TEST(FontCollection, ComparesNamesByPlatform) {
  const auto matches = [](std::string_view bytes, uint32_t platform, int32_t length,
                          std::u16string_view face) {
    return FaceNameMatches(Bytes(bytes), platform, length, face);
  };
  const std::string ab = Utf16BigEndian(u"Ab");
  EXPECT_TRUE(matches(ab, 0, 4, u"Ab"));
  EXPECT_TRUE(matches(ab, 3, 4, u"Ab"));
  EXPECT_FALSE(matches("AbAb", 3, 4, u"Ab"));
  EXPECT_TRUE(matches("Ab", 1, 2, u"Ab"));
  EXPECT_TRUE(matches("Ab", 2, 2, u"\u3041b"));  // low bytes only
  EXPECT_FALSE(matches("Abc", 1, 3, u"Ab"));
  EXPECT_TRUE(matches("", 3, 0, u""));
  EXPECT_TRUE(matches("", 1, 0, u""));
  // An odd length includes one more byte.
  EXPECT_TRUE(matches(ab + BigEndian(0, 2), 3, 5, u"Ab"));
  EXPECT_FALSE(matches(ab + BigEndian(1, 2), 3, 5, u"Ab"));
  EXPECT_FALSE(matches(ab + BigEndian(0, 1), 3, 5, u"Ab"));
  EXPECT_FALSE(matches("A", 1, 2, u"Ab"));
}

TEST(FontCollection, FindsNothingInBrokenCollections) {
  for (size_t length = 0; length < kCollection.size(); ++length) {
    ASSERT_EQ(Find(std::string_view(kCollection).substr(0, length), u"Beta"), std::nullopt) << length;
  }
  const auto changed = [](size_t position, const std::string& bytes) {
    return std::string(kCollection).replace(position, bytes.size(), bytes);
  };
  EXPECT_EQ(Find(changed(0, "OTTO"), u"Alpha"), std::nullopt);
  EXPECT_EQ(Find(changed(8, BigEndian(0xFFFFFFFF, 4)), u"Alpha"), std::nullopt);  // -1 members
  EXPECT_EQ(Find(changed(8, BigEndian(0x7FFFFFFF, 4)), u"None"), std::nullopt);
  EXPECT_EQ(Find(changed(12, BigEndian(0xFFFFFFFE, 4)), u"Alpha"),
            std::nullopt);                                             // offset of the first member
  EXPECT_EQ(Find(changed(12, BigEndian(0xFFFFFFFE, 4)), u"Beta"), 2);  // the others are intact
}

}  // namespace
}  // namespace hdi
