// What a program prepares before it draws a scene's texts: the fonts' files and faces, and the advances that
// all contestants use.
#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H

#include <string>
#include <string_view>
#include <vector>

#include "bench/scene.h"

namespace bench {

class TextFonts {
 public:
  // Opens the upright regular face of each family; nothing for a scene without texts. Throws
  // std::runtime_error if a family is not installed.
  explicit TextFonts(const Scene& scene);
  TextFonts(const TextFonts&) = delete;
  TextFonts& operator=(const TextFonts&) = delete;
  ~TextFonts();

  [[nodiscard]] size_t Count() const { return faces_.size(); }

  // In the order of the scene's families, without a size set. Owned by this object.
  [[nodiscard]] const std::string& Path(size_t font) const { return paths_[font]; }
  [[nodiscard]] FT_Face Face(size_t font) const { return faces_[font]; }

  // The advance of each unit of the scene's text `index`, in dots: the font's own, unhinted.
  [[nodiscard]] const std::vector<double>& Advances(size_t index) const { return advances_[index]; }

 private:
  [[nodiscard]] std::vector<double> MeasureUnits(const Text& text) const;

  FT_Library library_ = nullptr;
  std::vector<std::string> paths_;
  std::vector<FT_Face> faces_;
  std::vector<std::vector<double>> advances_;
};

// The length in bytes of a unit of a scene's text in UTF-8.
[[nodiscard]] constexpr int Utf8Length(char16_t unit) {
  if (unit < 0x80) return 1;
  return unit < 0x800 ? 2 : 3;
}

[[nodiscard]] std::string ToUtf8(const std::u16string& units);
// Decodes UTF-8. `bytes` must be valid and without characters beyond U+FFFF.
[[nodiscard]] std::u16string FromUtf8(std::string_view bytes);

}  // namespace bench
