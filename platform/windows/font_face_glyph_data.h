// Glyphs as stored in the "glyf" table: contour points in font units. Not read through GetGlyphOutlineW,
// which on some systems gives a wrong start for contours that begin with a control point.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/windows/selected_font.h"

namespace hdi {

struct OutlinePoint {
  double x;
  double y;
  bool isOnCurve;
};

struct GlyphData {
  std::vector<OutlinePoint> points;
  std::vector<size_t> ends;  // end index of each contour
  double origin = 0;         // the x from which the left side bearing counts
};

// Without points for a blank and for an unreadable glyph.
[[nodiscard]] GlyphData ReadGlyphData(const SelectedFont& font, uint16_t glyph);

}  // namespace hdi
