// Fonts of the engine's document, held against the engine's own look-up and against FreeType.
#include "engine/font.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>

#include "core/fpdfapi/font/cpdf_font.h"
#include "core/fxge/freetype/fx_freetype.h"
#include "engine/document.h"
#include "fpdfsdk/cpdfsdk_helpers.h"
#include "platform/font_subsetter.h"
#include "public/cpp/fpdf_scopers.h"
#include "public/fpdf_edit.h"
#include "tests/support/font_files.h"
#include "tests/support/saved_document.h"

namespace hdi::engine {
namespace {

std::span<const uint8_t> Bytes(const std::string& text) {
  return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}

std::u16string AllUnits() {
  std::u16string units(0x10000, u'\0');
  for (size_t i = 0; i < units.size(); ++i) units[i] = static_cast<char16_t>(i);
  return units;
}

std::vector<uint16_t> OurCodes(const std::string& file, std::u16string_view units) {
  Document document;
  const auto font = Font::Load(document, Bytes(file));
  std::vector<uint16_t> codes;
  if (font != nullptr) font->AppendCodes(units, codes);
  return codes;
}

std::vector<uint16_t> EngineCodes(const std::string& file, std::u16string_view units) {
  const ScopedFPDFDocument document(FPDF_CreateNewDocument());
  const auto bytes = Bytes(file);
  const ScopedFPDFFont font(FPDFText_LoadFont(document.get(), bytes.data(),
                                              static_cast<uint32_t>(bytes.size()), FPDF_FONT_TRUETYPE, 1));
  std::vector<uint16_t> codes;
  for (const char16_t unit : units) {
    codes.push_back(static_cast<uint16_t>(CPDFFontFromFPDFFont(font.get())->CharCodeFromUnicode(unit)));
  }
  return codes;
}

std::string Subset(const std::string& file, const std::vector<uint16_t>& units) {
  uint8_t* package = nullptr;
  uint32_t size = 0;
  uint32_t written = 0;
  FindCreateFontPackage()(Bytes(file).data(), static_cast<uint32_t>(file.size()), &package, &size, &written,
                          kSubsetFlagSubset, 0, kSubsetPlainFormat, kSubsetAnyLanguage,
                          kSubsetMicrosoftPlatform, kSubsetAnyEncoding, units.data(),
                          static_cast<uint16_t>(units.size()), std::malloc, std::realloc, std::free, nullptr);
  std::string subset(package, package + written);
  std::free(package);
  return subset;
}

// The widths by glyph of the one font in a document.
std::map<int, int> SavedWidths(Document& document) {
  StringSink sink;
  document.Save(sink);
  QPDF saved;
  saved.processMemoryFile("saved", sink.bytes.data(), sink.bytes.size());
  std::map<int, int> widths;
  for (auto& object : saved.getAllObjects()) {
    if (!object.isDictionary() || !object.hasKey("/W")) continue;
    auto array = object.getKey("/W").getArrayAsVector();
    for (size_t i = 0; i + 1 < array.size();) {
      const int first = array[i].getIntValueAsInt();
      if (array[i + 1].isArray()) {
        int glyph = first;
        for (auto& width : array[i + 1].getArrayAsVector()) widths[glyph++] = width.getIntValueAsInt();
        i += 2;
      } else {
        for (int glyph = first; glyph <= array[i + 1].getIntValueAsInt(); ++glyph) {
          widths[glyph] = array[i + 2].getIntValueAsInt();
        }
        i += 3;
      }
    }
  }
  return widths;
}

class FontTest : public testing::Test {
 protected:
  Library library_;
};

class FontCodesTest : public FontTest, public testing::WithParamInterface<const char*> {};

TEST_P(FontCodesTest, AreTheEnginesForEveryUnit) {
  const std::string file = font_files::Read(GetParam());
  if (file.empty()) GTEST_SKIP() << "no " << GetParam();
  const std::u16string units = AllUnits();
  const std::vector<uint16_t> codes = OurCodes(file, units);
  ASSERT_EQ(codes.size(), units.size());
  EXPECT_GT(units.size() - static_cast<size_t>(std::ranges::count(codes, 0)), 50U);
  EXPECT_TRUE(codes == EngineCodes(file, units));
}

// The first has characters beyond U+FFFF, the last a map for symbols alone.
INSTANTIATE_TEST_SUITE_P(WholeFonts, FontCodesTest,
                         testing::Values("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf",
                                         "/usr/share/fonts/truetype/liberation/LiberationSerif-Regular.ttf",
                                         "/usr/share/wine/fonts/symbol.ttf"));

// Glyphs that others are composed of have no character here, which leaves gaps between those that have one.
TEST_F(FontTest, WidthsOfASubsetAreTheFonts) {
  const std::string whole = font_files::ReadLiberationSerif();
  if (whole.empty()) GTEST_SKIP() << "no LiberationSerif-Regular.ttf";
  const std::string file = Subset(whole, {u'I', u'M', u'b', u'f', u'm', u'w', 0xC9, 0xE9, 0xEE, 0xFC});
  Document document;
  const auto font = Font::Load(document, Bytes(file));
  ASSERT_NE(font, nullptr);
  const std::u16string units = AllUnits();
  std::vector<uint16_t> codes;
  font->AppendCodes(units, codes);
  const std::map<int, int> widths = SavedWidths(document);

  FT_Library library = nullptr;
  FT_Face face = nullptr;
  ASSERT_EQ(FT_Init_FreeType(&library), 0);
  ASSERT_EQ(FT_New_Memory_Face(library, Bytes(file).data(), static_cast<FT_Long>(file.size()), 0, &face), 0);
  size_t shown = 0;
  for (size_t i = 0; i < units.size(); ++i) {
    if (codes[i] == 0) continue;
    ++shown;
    ASSERT_EQ(FT_Load_Glyph(face, codes[i], FT_LOAD_NO_SCALE), 0);
    ASSERT_EQ(widths.at(codes[i]), face->glyph->advance.x * 1000 / face->units_per_EM) << i;
  }
  EXPECT_EQ(shown, 10U);
  FT_Done_FreeType(library);
}

TEST_F(FontTest, FilesThatAreNoFontsAreRefused) {
  const std::string whole = font_files::ReadLiberationSerif();
  if (whole.empty()) GTEST_SKIP() << "no LiberationSerif-Regular.ttf";
  const auto loads = [](const std::string& file) {
    Document document;
    return Font::Load(document, Bytes(file)) != nullptr;
  };
  EXPECT_TRUE(loads(whole));
  EXPECT_FALSE(loads(""));
  EXPECT_FALSE(loads(std::string(1000, 'x')));
  for (const size_t part : {1U, 10U, 100U, 500U, 900U}) {
    EXPECT_FALSE(loads(whole.substr(0, whole.size() * part / 1000))) << part;
  }
  for (const char* table : {"cmap", "glyf", "head", "maxp"}) {
    std::string without = whole;
    without.replace(without.find(table), 4, "none");
    EXPECT_FALSE(loads(without)) << table;
  }
}

}  // namespace
}  // namespace hdi::engine
