#include "bench/text_fonts.h"

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_ADVANCES_H

#include <memory>
#include <stdexcept>

namespace bench {
namespace {

// fontconfig returns the closest installed face, so its family must be compared.
std::string FindFontFile(const std::string& family) {
  const std::unique_ptr<FcPattern, decltype(&FcPatternDestroy)> wanted(FcPatternCreate(), &FcPatternDestroy);
  FcPatternAddString(wanted.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family.c_str()));
  FcPatternAddString(wanted.get(), FC_FONTFORMAT, reinterpret_cast<const FcChar8*>("TrueType"));
  FcConfigSubstitute(nullptr, wanted.get(), FcMatchPattern);
  FcDefaultSubstitute(wanted.get());
  FcResult result = FcResultMatch;
  const std::unique_ptr<FcPattern, decltype(&FcPatternDestroy)> found(
      FcFontMatch(nullptr, wanted.get(), &result), &FcPatternDestroy);
  FcChar8* name = nullptr;
  FcChar8* file = nullptr;
  if (found == nullptr || FcPatternGetString(found.get(), FC_FAMILY, 0, &name) != FcResultMatch ||
      family != reinterpret_cast<const char*>(name) ||
      FcPatternGetString(found.get(), FC_FILE, 0, &file) != FcResultMatch) {
    throw std::runtime_error("the font " + family + " is not installed");
  }
  return reinterpret_cast<const char*>(file);
}

}  // namespace

TextFonts::TextFonts(const Scene& scene) {
  if (scene.families.empty()) return;
  if (FT_Init_FreeType(&library_) != 0) throw std::runtime_error("cannot initialise FreeType");
  for (const std::string& family : scene.families) {
    const std::string& path = paths_.emplace_back(FindFontFile(family));
    if (FT_New_Face(library_, path.c_str(), 0, &faces_.emplace_back()) != 0) {
      throw std::runtime_error("cannot read " + path);
    }
  }
  advances_.reserve(scene.texts.size());
  for (const Text& text : scene.texts) advances_.push_back(MeasureUnits(text));
}

TextFonts::~TextFonts() {
  if (library_ != nullptr) FT_Done_FreeType(library_);
}

std::vector<double> TextFonts::MeasureUnits(const Text& text) const {
  FT_Face face = faces_[text.font];
  std::vector<double> advances;
  advances.reserve(text.units.size());
  for (const char16_t unit : text.units) {
    const FT_UInt glyph = FT_Get_Char_Index(face, unit);
    FT_Fixed width = 0;
    if (glyph == 0 || FT_Get_Advance(face, glyph, FT_LOAD_NO_SCALE, &width) != 0) {
      throw std::runtime_error(paths_[text.font] + " lacks a character of the texts");
    }
    advances.push_back(static_cast<double>(width) * text.height / face->units_per_EM);
  }
  return advances;
}

std::string ToUtf8(const std::u16string& units) {
  std::string bytes;
  for (const char16_t unit : units) {
    const int length = Utf8Length(unit);
    if (length == 1) {
      bytes += static_cast<char>(unit);
      continue;
    }
    bytes += static_cast<char>(length == 2 ? 0xC0 | unit >> 6 : 0xE0 | unit >> 12);
    if (length == 3) bytes += static_cast<char>(0x80 | (unit >> 6 & 0x3F));
    bytes += static_cast<char>(0x80 | (unit & 0x3F));
  }
  return bytes;
}

std::u16string FromUtf8(std::string_view bytes) {
  std::u16string units;
  for (const char signedByte : bytes) {
    const auto byte = static_cast<unsigned char>(signedByte);
    if ((byte & 0xC0) == 0x80) {
      units.back() = static_cast<char16_t>(units.back() << 6 | (byte & 0x3F));
    } else if (byte < 0x80) {
      units += static_cast<char16_t>(byte);
    } else {
      units += static_cast<char16_t>(byte < 0xE0 ? byte & 0x1F : byte & 0x0F);
    }
  }
  return units;
}

}  // namespace bench
