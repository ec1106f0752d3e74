// The font subsetter with installed fonts, checked by an OpenType sanitizer, and with damaged ones.
#include "platform/font_subsetter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/font_faces.h"
#include "platform/font_names.h"
#include "platform/linux/font_file.h"
#include "platform/linux/font_glyphs.h"
#include "platform/sfnt_bytes.h"
#include "tests/support/font_files.h"
#include "tests/support/scratch.h"

namespace {

using Bytes = std::vector<uint8_t>;
using std::string;
using std::u16string;
using testing::IsEmpty;
using namespace std::string_literals;
using namespace std::string_view_literals;

constexpr const char* kSans = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
constexpr const char* kItalic = "/usr/share/fonts/truetype/liberation/LiberationSerif-Italic.ttf";
constexpr const char* kChinese = "/usr/share/fonts/truetype/wqy/wqy-zenhei.ttc";
constexpr const char* kDingbats = "/usr/share/wine/fonts/wingding.ttf";

constexpr uint16_t kPlain = hdi::kSubsetFlagSubset;
constexpr uint16_t kMember = hdi::kSubsetFlagSubset | hdi::kSubsetFlagCollection;

// Returns the subset, empty on failure. A failure must leave the output arguments unchanged.
string Subset(const string& font, const u16string& codes, uint16_t flags = kPlain, uint16_t index = 0) {
  uint8_t* package = nullptr;
  uint32_t size = 7;
  uint32_t written = 7;
  const std::vector<uint16_t> keep(codes.begin(), codes.end());
  const uint32_t result = (*hdi::FindCreateFontPackage())(
      reinterpret_cast<const uint8_t*>(font.data()), static_cast<uint32_t>(font.size()), &package, &size,
      &written, flags, index, hdi::kSubsetPlainFormat, hdi::kSubsetAnyLanguage, hdi::kSubsetMicrosoftPlatform,
      hdi::kSubsetAnyEncoding, keep.data(), static_cast<uint16_t>(keep.size()), malloc, realloc, free,
      nullptr);
  EXPECT_EQ(result == 0, package != nullptr);
  EXPECT_EQ(size, written);
  EXPECT_EQ(package == nullptr, written == 7);
  string subset(reinterpret_cast<const char*>(package), package == nullptr ? 0 : written);
  free(package);
  return subset;
}

// Returns what is visible of a glyph: advance and outline.
std::vector<double> Look(const hdi::FontGlyphs& glyphs, uint16_t glyph) {
  std::vector<double> look{glyphs.Advance(glyph)};
  for (const hdi::GlyphContour& contour : glyphs.Outline(glyph)) {
    look.push_back(static_cast<double>(contour.size()));
    for (const hdi::GlyphPoint& point : contour) look.insert(look.end(), {point.x, point.y});
  }
  return look;
}

// Reads a table of a font file or collection member.
Bytes Table(const string& path, const char (&tag)[5], uint16_t index = 0) {
  const hdi::FontFile file(path);
  return file.Read(*file.Member(file.MemberOffsets().at(index)).Find(hdi::FontTag(tag)));
}

// Expects a valid subset with only the tables that a reader needs, with the names and slant of the source,
// that maps exactly the characters of `mapped`, each to its own glyph that looks as in the source.
void ExpectSubset(const string& subset, const u16string& mapped, const char* source, uint16_t index = 0) {
  ASSERT_THAT(subset, testing::Not(IsEmpty()));
  const scratch::Directory directory;
  const string path = directory.Write("font.ttf", subset);
  const string command = "ots-sanitize " + path + " >" + directory.Path("said") + " 2>&1";
  EXPECT_EQ(std::system(command.c_str()), 0) << directory.Read("said");

  string tables;
  const auto count = static_cast<uint8_t>(subset[5]);
  for (size_t i = 0; i < count; ++i) tables += subset.substr(12 + 16 * i, 4) + ' ';
  EXPECT_EQ(tables, "OS/2 cmap glyf head hhea hmtx loca maxp name post ");
  for (const uint16_t id : std::array<uint16_t, 6>{1, 2, 4, 6, 16, 17}) {
    const auto name = [&](const Bytes& table) {
      const auto names = hdi::FontNames(table, id);
      return names.empty() ? u"" : names.front();
    };
    EXPECT_EQ(name(Table(path, "name")), name(Table(source, "name", index))) << id;
  }
  const auto angle = [](const Bytes& table) { return hdi::ReadU32(table, 4); };
  EXPECT_EQ(angle(Table(path, "post")), angle(Table(source, "post", index)));
  const Bytes metrics = Table(path, "OS/2");
  EXPECT_EQ(hdi::ReadU16(metrics, 64), mapped.empty() ? 0 : mapped.front());
  EXPECT_EQ(hdi::ReadU16(metrics, 66), mapped.empty() ? 0 : mapped.back());

  const hdi::FontGlyphs found(path, 0);
  const hdi::FontGlyphs expected(source, index);
  EXPECT_EQ(Look(found, 0), Look(expected, 0));
  std::set<uint16_t> glyphs;
  for (char16_t code = 0; code < 0xFFFF; ++code) {
    const uint16_t glyph = found.GlyphOf(code);
    ASSERT_EQ(glyph != 0, mapped.find(code) != mapped.npos) << int{code};
    if (glyph == 0) continue;
    EXPECT_TRUE(glyphs.insert(glyph).second) << int{code};
    EXPECT_EQ(Look(found, glyph), Look(expected, expected.GlyphOf(code))) << int{code};
  }
}

void ExpectSubsetOf(const char* path, const u16string& codes, const u16string& mapped) {
  ExpectSubset(Subset(font_files::Read(path), codes), mapped, path);
}

TEST(FontSubsetter, KeepsTheLookOfCharactersAndSkipsMissingOnes) {
  ExpectSubsetOf(kSans, u" AaÅéλЖאب", u" AaÅéλЖאب");
  ExpectSubsetOf(kItalic, u"Wörld ½", u" Wdlr½ö");
  ExpectSubsetOf(kSans, u"A\u4E2D\xD83D\xDE00\xFFFF", u"A");
  ExpectSubsetOf(kSans, u"\u4E2D\u6587", u"");
  ExpectSubsetOf(kDingbats, u"lnÄ\u011F\uF06E", u"ln\uF06E");  // symbols keep the codes given

  const scratch::Directory directory;
  const string path = directory.Write("font.ttf", Subset(font_files::Read(kSans), u"Hello, world"));
  EXPECT_EQ(hdi::ReadU16(Table(path, "maxp"), 4), 1 + 9) << "the missing-character glyph and one a letter";
}

TEST(FontSubsetter, SeparatesSharedGlyphs) {
  ExpectSubsetOf(kSans, u" -\u00A0\u00ADµΔΩμ\u2126\u2206", u" -\u00A0\u00ADµΔΩμ\u2126\u2206");
  ExpectSubsetOf(kItalic, u" A\u00A0\u00AD\u2010", u" A\u00A0\u00AD\u2010");
}

TEST(FontSubsetter, SubsetsMembersOfACollection) {
  const string font = font_files::Read(kChinese);
  for (uint16_t index = 0; index < 3; ++index) {
    ExpectSubset(Subset(font, u"Ab中文字\u3000", kMember, index), u"Ab\u3000中字文", kChinese, index);
  }
  EXPECT_THAT(Subset(font, u"A", kMember, 3), IsEmpty());
  EXPECT_THAT(Subset(font, u"A", kPlain), IsEmpty());
}

// Thousands of characters, many sharing glyphs, so that the outlines exceed short offsets.
TEST(FontSubsetter, KeepsThousandsOfCharacters) {
  const auto test = [](const char* path, uint16_t flags, char16_t first, char16_t last) {
    const hdi::FontGlyphs source(path, 0);
    u16string codes;
    for (char16_t code = first; code < last; ++code) {
      if (source.GlyphOf(code) != 0 && code % 5 != 0) codes += code;
    }
    EXPECT_GT(codes.size(), 4000U);
    ExpectSubset(Subset(font_files::Read(path), codes, flags), codes, path);
  };
  test(kSans, kPlain, 0, 0xFFFE);
  test(kChinese, kMember, 0x4E00, 0x9FFF);
}

TEST(FontSubsetter, FailsForUnsupportedArguments) {
  const string font = font_files::Read(kSans);
  for (const int flags : {0, int{kMember}, kPlain | 8}) {
    EXPECT_THAT(Subset(font, u"A", static_cast<uint16_t>(flags)), IsEmpty()) << flags;
  }
  EXPECT_THAT(Subset(font, u""), IsEmpty());
  EXPECT_THAT(Subset({}, u"A"), IsEmpty());

  // With another version tag, or without a table for the outlines.
  for (const auto tag : {"\0\1\0\0"sv, "glyf"sv, "loca"sv, "cmap"sv, "hmtx"sv}) {
    string changed = font;
    changed[changed.find(tag)] ^= 1;
    EXPECT_THAT(Subset(changed, u"A"), IsEmpty()) << tag;
  }
}

// The sanitizers detect reads out of bounds; every subset must open.
TEST(DamagedFonts, AreReadSafely) {
  const u16string codes = u" AÄabé\u00A0\u00AD\uF061";
  const scratch::Directory directory;
  std::mt19937 random(1);
  for (const char* source : {kItalic, kDingbats}) {
    const string font = font_files::Read(source);
    // The same font as the first of three members; the others are missing.
    const string collection = "ttcf\0\1\0\0\0\0\0\3\0\0\0\x18\0\0\xFF\xFF\xFF\xFF\xFF\xFF"s + font;
    for (int round = 0; round < 400; ++round) {
      string damaged = round % 3 == 0 ? collection : font;
      if (round % 4 == 0) damaged.resize(random() % damaged.size() + 1);
      const size_t reach = round % 2 == 0 ? damaged.size() : std::min<size_t>(damaged.size(), 2000);
      for (size_t changes = random() % 20 + 1; changes > 0; --changes) {
        damaged[random() % reach] = static_cast<char>(random() % 3 == 0 ? 0xFF : random());
      }
      const string path = directory.Write("font.ttf", damaged);
      const hdi::FontFile file(path);
      for (const uint32_t offset : file.MemberOffsets()) {
        const hdi::FontMember member = file.Member(offset);
        const hdi::FontTable* names = member.Find(hdi::FontTag("name"));
        const auto families =
            names == nullptr ? std::vector<u16string>() : hdi::FontNames(file.Read(*names), 1);
        EXPECT_LE(families.size(), damaged.size() / 12);
        EXPECT_LE(hdi::PlainFont(file, member).size(), 2 * damaged.size());
      }
      const string subset = Subset(damaged, codes);
      if (!subset.empty()) directory.Write("font.ttf", subset);
      const hdi::FontGlyphs glyphs(path, 0);
      EXPECT_TRUE(subset.empty() || glyphs.Advance(0) > 0) << round;
      for (const char16_t code : codes) static_cast<void>(glyphs.Outline(glyphs.GlyphOf(code)));
    }
  }
}

}  // namespace
