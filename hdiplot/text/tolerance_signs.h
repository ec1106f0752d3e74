// The signs of geometric tolerances (ISO 1101), which drawings write as letters of a font of their own.
#pragma once

#include <optional>
#include <string_view>

#include "hdiplot/text/stroke_glyphs.h"

namespace hdiplot {

// Whether the letters of that font file are such signs.
[[nodiscard]] bool IsToleranceFont(std::string_view fontFile);

// The character of the sign that the letter stands for, or the letter itself.
[[nodiscard]] char16_t ToleranceSign(char16_t letter);

// None for any other character.
[[nodiscard]] std::optional<StrokeGlyph> DrawnToleranceSign(char16_t unit);

}  // namespace hdiplot
