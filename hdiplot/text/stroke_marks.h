// Strokes that the Hershey fonts lack: signs of drawings, and accents.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "hdiplot/text/stroke_font.h"

namespace hdiplot {

// Degree, plus-minus, diameter and some others; none for any other unit.
[[nodiscard]] std::optional<StrokeGlyph> DrawnSign(char16_t unit);

// Adds the accent, a combining character, to `glyph`, over or below the middle of its strokes. False when
// there is no such accent here.
[[nodiscard]] bool AddAccent(char16_t accent, StrokeGlyph& glyph);

}  // namespace hdiplot
