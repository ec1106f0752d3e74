// Characters drawn with a pen: the glyphs of Hershey fonts, and the symbols and accents that they lack.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "hdiplot/geometry/points.h"

namespace hdiplot {

// In heights of capitals, Y up, the base line at 0.
struct StrokeGlyph {
  double advance = 0;
  std::vector<std::vector<Vec2>> strokes;  // polylines
};

// The glyphs of a font in James Hurt's format (.jhf), by its name, "rowmans", from U+0020 on. Empty when
// there is no such font. For a broken file, the glyphs up to that place.
[[nodiscard]] std::vector<StrokeGlyph> ReadHersheyFont(std::string_view name);

// Degree, plus-minus, diameter, circumflex and a few more; none for any other unit.
[[nodiscard]] std::optional<StrokeGlyph> DrawnSign(char16_t unit);

// Adds the accent, a combining character, above or below the middle of the glyph's strokes. False for an
// unknown accent.
[[nodiscard]] bool AddAccent(char16_t accent, StrokeGlyph& glyph);

}  // namespace hdiplot
