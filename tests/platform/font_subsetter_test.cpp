// What the font subsetter makes of installed fonts, read back with FreeType and judged by an OpenType
// sanitiser, and that nothing of a damaged font goes further than a clean failure.
#include "platform/font_subsetter.h"

#include <ft2build.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include FT_FREETYPE_H

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/support/scratch.h"

namespace {

using Bytes = std::vector<uint8_t>;
using testing::IsEmpty;
using testing::SizeIs;
using namespace std::string_view_literals;

constexpr const char* kSans = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
constexpr const char* kLiberation = "/usr/share/fonts/truetype/liberation/LiberationSerif-Italic.ttf";
constexpr const char* kChinese = "/usr/share/fonts/truetype/wqy/wqy-zenhei.ttc";
constexpr const char* kDingbats = "/usr/share/wine/fonts/wingding.ttf";

Bytes ReadFile(const char* path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

constexpr uint16_t kPlain = hdi::kSubsetFlagSubset;
constexpr uint16_t kMember = hdi::kSubsetFlagSubset | hdi::kSubsetFlagCollection;

// The subset, nothing when there is none. A failure must leave the results alone.
Bytes Subset(const Bytes& font, std::u16string_view codes, uint16_t flags = kPlain, uint16_t index = 0) {
  uint8_t* package = nullptr;
  uint32_t size = 7;
  uint32_t written = 7;
  const std::vector<uint16_t> keep(codes.begin(), codes.end());
  const uint32_t result = (*hdi::FindCreateFontPackage())(
      font.data(), static_cast<uint32_t>(font.size()), &package, &size, &written, flags, index,
      hdi::kSubsetPlainFormat, hdi::kSubsetAnyLanguage, hdi::kSubsetMicrosoftPlatform,
      hdi::kSubsetAnyEncoding, keep.data(), static_cast<uint16_t>(keep.size()), malloc, realloc, free,
      nullptr);
  EXPECT_EQ(result == 0, package != nullptr);
  if (package == nullptr) {
    EXPECT_EQ(std::pair(size, written), std::pair(7U, 7U));
    return {};
  }
  EXPECT_LE(written, size);
  Bytes subset(package, package + written);
  free(package);
  return subset;
}

// A face that FreeType reads from bytes, which must outlive it.
class Face {
 public:
  explicit Face(const Bytes& bytes, FT_Long index = 0) {
    FT_Init_FreeType(&library_);
    FT_New_Memory_Face(library_, bytes.data(), static_cast<FT_Long>(bytes.size()), index, &face_);
    if (face_ != nullptr && face_->charmap == nullptr) FT_Select_Charmap(face_, FT_ENCODING_MS_SYMBOL);
  }
  Face(const Face&) = delete;
  Face& operator=(const Face&) = delete;
  ~Face() { FT_Done_FreeType(library_); }

  explicit operator bool() const { return face_ != nullptr; }
  FT_Face operator->() const { return face_; }

  [[nodiscard]] std::map<FT_ULong, FT_UInt> Map() const {
    std::map<FT_ULong, FT_UInt> map;
    FT_UInt glyph = 0;
    for (FT_ULong code = FT_Get_First_Char(face_, &glyph); glyph != 0;
         code = FT_Get_Next_Char(face_, code, &glyph)) {
      map[code] = glyph;
    }
    return map;
  }

  // All that shows of a glyph, as text: its advance, and its outline in units of the em.
  [[nodiscard]] std::string Look(FT_UInt glyph) const {
    if (FT_Load_Glyph(face_, glyph, FT_LOAD_NO_SCALE) != 0) return "unreadable";
    std::string look = std::to_string(face_->glyph->metrics.horiAdvance);
    const FT_Outline& outline = face_->glyph->outline;
    for (int i = 0; i < outline.n_points; ++i) {
      look += ' ' + std::to_string(outline.points[i].x) + ',' + std::to_string(outline.points[i].y) + '/' +
              std::to_string(outline.tags[i] & FT_CURVE_TAG_ON);
    }
    for (int i = 0; i < outline.n_contours; ++i) look += " c" + std::to_string(outline.contours[i]);
    return look;
  }

 private:
  FT_Library library_ = nullptr;
  FT_Face face_ = nullptr;
};

std::set<std::string> TablesOf(const Bytes& font) {
  std::set<std::string> tables;
  for (size_t i = 0; i < font[5]; ++i) {
    const uint8_t* const record = font.data() + 12 + 16 * i;
    tables.emplace(record, record + 4);
  }
  return tables;
}

void ExpectSane(const Bytes& font) {
  const scratch::Directory directory;
  const std::string path = directory.Write("font.ttf", {font.begin(), font.end()});
  const std::string command = "ots-sanitize " + path + " >" + directory.Path("said") + " 2>&1";
  EXPECT_EQ(std::system(command.c_str()), 0) << directory.Read("said");
}

// The subset is sound, has only what a reader needs, is named like the source, and maps exactly the
// characters of `mapped`, each to a glyph of its own that looks as in the source.
void ExpectSubset(const Bytes& subset, std::u16string_view mapped, const Face& source) {
  ASSERT_THAT(subset, testing::Not(IsEmpty()));
  ExpectSane(subset);
  const Face face(subset);
  ASSERT_TRUE(face);
  EXPECT_THAT(TablesOf(subset), testing::ElementsAre("OS/2", "cmap", "glyf", "head", "hhea", "hmtx", "loca",
                                                     "maxp", "name", "post"));
  EXPECT_EQ(face.Look(0), source.Look(0));
  EXPECT_STREQ(FT_Get_Postscript_Name(face.operator->()), FT_Get_Postscript_Name(source.operator->()));
  EXPECT_STREQ(face->family_name, source->family_name);
  EXPECT_STREQ(face->style_name, source->style_name);
  ASSERT_EQ(face->num_charmaps, 1);
  EXPECT_EQ(face->charmaps[0]->encoding, FT_ENCODING_UNICODE);

  const auto map = face.Map();
  EXPECT_THAT(map, SizeIs(mapped.size()));
  std::set<FT_UInt> glyphs;
  for (const char16_t code : mapped) {
    ASSERT_TRUE(map.contains(code)) << "U+" << std::hex << int{code};
    EXPECT_TRUE(glyphs.insert(map.at(code)).second) << "U+" << std::hex << int{code};
    FT_UInt original = FT_Get_Char_Index(source.operator->(), code);
    if (original == 0) original = FT_Get_Char_Index(source.operator->(), 0xF000U + code);
    EXPECT_EQ(face.Look(map.at(code)), source.Look(original)) << "U+" << std::hex << int{code};
  }
}

void ExpectSubsetOf(const char* path, std::u16string_view codes, std::u16string_view mapped) {
  const Bytes font = ReadFile(path);
  ExpectSubset(Subset(font, codes), mapped, Face(font));
}

TEST(FontSubsetter, KeepsCharactersOfAnyScriptWithTheirLooks) {
  ExpectSubsetOf(kSans, u" AaÅéλЖאب", u" AaÅéλЖאب");
  ExpectSubsetOf(kLiberation, u"Wörld ½", u" Wdlrö½");
  EXPECT_LT(Subset(ReadFile(kSans), u"Hello, world").size(), 8000U);
}

TEST(FontSubsetter, GivesCharactersThatShareAGlyphOneEach) {
  ExpectSubsetOf(kSans, u" -\u00A0\u00ADµΔΩμ\u2126\u2206", u" -\u00A0\u00ADµΔΩμ\u2126\u2206");
  ExpectSubsetOf(kLiberation, u" A\u00A0\u00AD\u2010\u2011", u" A\u00A0\u00AD\u2010\u2011");
}

TEST(FontSubsetter, PassesOverWhatTheFontLacks) {
  ExpectSubsetOf(kSans, u"A\u4E2D\xD83D\xDE00\xFFFF", u"A");
  ExpectSubsetOf(kSans, u"\u4E2D\u6587", u"");
}

TEST(FontSubsetter, TakesMembersOfACollection) {
  const Bytes font = ReadFile(kChinese);
  for (uint16_t index = 0; index < 3; ++index) {
    ExpectSubset(Subset(font, u"Ab中文字\u3000", kMember, index), u"Ab中文字\u3000", Face(font, index));
  }
  EXPECT_THAT(Subset(font, u"A", kMember, 3), IsEmpty());
  EXPECT_THAT(Subset(font, u"A", kPlain), IsEmpty());
}

// Thousands of characters, many of which share glyphs, so that the outlines outgrow short offsets.
TEST(FontSubsetter, KeepsWholeAlphabets) {
  const auto test = [](const char* path, uint16_t flags, char16_t first, char16_t last) {
    const Bytes font = ReadFile(path);
    const Face source(font);
    std::u16string codes;
    for (const auto& [code, glyph] : source.Map()) {
      if (code >= first && code <= last && code % 5 != 0) codes += static_cast<char16_t>(code);
    }
    EXPECT_GT(codes.size(), 4000U);
    ExpectSubset(Subset(font, codes, flags), codes, source);
  };
  test(kSans, kPlain, 0, 0xFFFE);
  test(kChinese, kMember, 0x4E00, 0x9FFF);
}

TEST(FontSubsetter, KeepsSymbolsUnderTheCodesAsGiven) {
  if (!std::filesystem::exists(kDingbats)) GTEST_SKIP() << "the package fonts-wine is not installed";
  ExpectSubsetOf(kDingbats, u"lnÄ\u011F\uF06E", u"ln\uF06E");
}

TEST(FontSubsetter, FailsForWhatIsNotItsJob) {
  const Bytes font = ReadFile(kSans);
  EXPECT_THAT(Subset(font, u"A", 0), IsEmpty());
  EXPECT_THAT(Subset(font, u"A", kMember), IsEmpty());
  EXPECT_THAT(Subset(font, u"A", kPlain | 8), IsEmpty());
  EXPECT_THAT(Subset(font, u""), IsEmpty());
  EXPECT_THAT(Subset({}, u"A"), IsEmpty());

  // Of another kind, or without one of the tables that make the outlines.
  for (const std::string_view tag :
       {std::string_view("\0\1\0\0", 4), "glyf"sv, "loca"sv, "cmap"sv, "hmtx"sv}) {
    Bytes changed = font;
    *std::search(changed.begin(), changed.end(), tag.begin(), tag.end()) ^= 1;
    EXPECT_THAT(Subset(changed, u"A"), IsEmpty()) << tag;
  }
}

// Whatever comes of a damaged font can be opened, and its glyphs can be asked for.
TEST(FontSubsetter, SurvivesDamage) {
  for (const char* path : {kLiberation, kDingbats}) {
    const Bytes font = ReadFile(path);
    std::mt19937 random(1);
    const auto below = [&](size_t limit) { return random() % limit; };
    for (int round = 0; round < 400 && !font.empty(); ++round) {
      Bytes damaged = font;
      if (round % 4 == 0) damaged.resize(below(damaged.size()));
      const size_t reach = round % 2 == 0 ? damaged.size() : std::min<size_t>(damaged.size(), 2000);
      for (size_t i = 0; i <= below(20) && reach > 0; ++i) {
        damaged[below(reach)] = static_cast<uint8_t>(random() % 3 == 0 ? 0xFF : random());
      }
      const Bytes subset = Subset(damaged, u" AÄabé\u00A0\u00AD\uF061");
      if (subset.empty()) continue;
      const Face face(subset);
      ASSERT_TRUE(face) << path << ' ' << round;
      for (FT_Long glyph = 0; glyph < face->num_glyphs; ++glyph) {
        static_cast<void>(face.Look(static_cast<FT_UInt>(glyph)));
      }
    }
  }
}

}  // namespace
