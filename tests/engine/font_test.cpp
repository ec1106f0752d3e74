// Fonts, compared with the engine's own look-up and with FreeType.
#include "engine/font.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <numeric>

#include "core/fpdfapi/font/cpdf_font.h"
#include "core/fxge/freetype/fx_freetype.h"
#include "engine/document.h"
#include "engine/library.h"
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
  std::iota(units.begin(), units.end(), u'\0');
  return units;
}

std::string Subset(const std::string& file, std::u16string_view units) {
  uint8_t* package = nullptr;
  uint32_t size = 0;
  uint32_t written = 0;
  const std::vector<uint16_t> keep(units.begin(), units.end());
  FindCreateFontPackage()(Bytes(file).data(), static_cast<uint32_t>(file.size()), &package, &size, &written,
                          kSubsetFlagSubset, 0, kSubsetPlainFormat, kSubsetAnyLanguage,
                          kSubsetMicrosoftPlatform, kSubsetAnyEncoding, keep.data(),
                          static_cast<uint16_t>(keep.size()), std::malloc, std::realloc, std::free, nullptr);
  std::string subset(package, package + written);
  std::free(package);
  return subset;
}

// Returns the widths by glyph of the only font in a document.
std::map<int, int> SavedWidths(Document& document) {
  std::map<int, int> widths;
  SavedDocument saved(document);
  for (auto& object : saved.Objects()) {
    if (!object.isDictionary() || !object.hasKey("/W")) continue;
    auto array = object.getKey("/W").getArrayAsVector();
    // Either a first glyph and an array of widths, or first glyph, last glyph and width.
    for (size_t i = 0; i + 1 < array.size();) {
      int glyph = array[i].getIntValueAsInt();
      if (array[i + 1].isArray()) {
        for (auto& width : array[i + 1].getArrayAsVector()) widths[glyph++] = width.getIntValueAsInt();
        i += 2;
      } else {
        for (; glyph <= array[i + 1].getIntValueAsInt(); ++glyph)
          widths[glyph] = array[i + 2].getIntValueAsInt();
        i += 3;
      }
    }
  }
  return widths;
}

class FontTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_FALSE(serif_.empty()); }

  const std::string serif_ = font_files::ReadLiberationSerif();
  Library library_;
};

// The first font has characters beyond U+FFFF, the last only a symbol map.
TEST_F(FontTest, CodesMatchTheEngineForEveryUnit) {
  const std::u16string units = AllUnits();
  for (const std::string& file : {font_files::Read("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"), serif_,
                                  font_files::Read("/usr/share/wine/fonts/symbol.ttf")}) {
    Document document;
    const auto ours = Font::Load(document, Bytes(file));
    ASSERT_NE(ours, nullptr);
    std::vector<uint16_t> codes;
    ours->AppendCodes(units, codes);
    ASSERT_EQ(codes.size(), units.size());
    EXPECT_GT(units.size() - static_cast<size_t>(std::ranges::count(codes, 0)), 50U);

    const ScopedFPDFDocument engines(FPDF_CreateNewDocument());
    const ScopedFPDFFont font(FPDFText_LoadFont(engines.get(), Bytes(file).data(),
                                                static_cast<uint32_t>(file.size()), FPDF_FONT_TRUETYPE, 1));
    CPDF_Font* const reference = CPDFFontFromFPDFFont(font.get());
    for (size_t i = 0; i < units.size(); ++i)
      ASSERT_EQ(codes[i], reference->CharCodeFromUnicode(units[i])) << i;
  }
}

// Components of composite glyphs have no character here, which leaves gaps in the numbers of those that have
// one.
TEST_F(FontTest, WidthsOfASubsetMatchTheFont) {
  const std::string file = Subset(serif_, u"IMbfmw\u00C9\u00E9\u00EE\u00FC");
  Document document;
  const auto font = Font::Load(document, Bytes(file));
  ASSERT_NE(font, nullptr);
  std::vector<uint16_t> codes;
  font->AppendCodes(AllUnits(), codes);
  std::erase(codes, 0);
  EXPECT_EQ(codes.size(), 10U);

  const std::map<int, int> widths = SavedWidths(document);
  FT_Library library = nullptr;
  FT_Face face = nullptr;
  ASSERT_EQ(FT_Init_FreeType(&library), 0);
  ASSERT_EQ(FT_New_Memory_Face(library, Bytes(file).data(), static_cast<FT_Long>(file.size()), 0, &face), 0);
  for (const uint16_t code : codes) {
    ASSERT_EQ(FT_Load_Glyph(face, code, FT_LOAD_NO_SCALE), 0);
    EXPECT_EQ(widths.at(code), face->glyph->advance.x * 1000 / face->units_per_EM) << code;
  }
  FT_Done_FreeType(library);
}

TEST_F(FontTest, RejectsInvalidFiles) {
  const auto loads = [](const std::string& file) {
    Document document;
    return Font::Load(document, Bytes(file)) != nullptr;
  };
  EXPECT_TRUE(loads(serif_));
  EXPECT_FALSE(loads(""));
  EXPECT_FALSE(loads(std::string(1000, 'x')));
  for (const size_t part : {1U, 10U, 100U, 500U}) {
    EXPECT_FALSE(loads(serif_.substr(0, serif_.size() * part / 1000))) << part;
  }
  for (const char* table : {"cmap", "glyf", "head", "maxp"}) {
    std::string without = serif_;
    without.replace(without.find(table), 4, "none");
    EXPECT_FALSE(loads(without)) << table;
  }
  // If a table extends beyond the file, the font is rejected only if readers need that table.
  for (const auto& [table, isNeeded] : {std::pair("hmtx", true), std::pair("post", false)}) {
    std::string longer = serif_;
    longer.replace(longer.find(table) + 12, 4, font_files::BigEndian(longer.size(), 4));
    EXPECT_EQ(loads(longer), !isNeeded) << table;
  }
}

}  // namespace
}  // namespace hdi::engine
