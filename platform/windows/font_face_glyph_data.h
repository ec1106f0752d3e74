// Glyphs as the table "glyf" has them: points of contours, in font units. They are read here and not asked of
// GetGlyphOutlineW, which not every system has start right on contours that begin with a control point.
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
  std::vector<size_t> ends;  // for each contour, one past its last point
  double origin = 0;         // the x that its left side bearing counts to
};

// Without points for a blank, and for a glyph that can't be read.
[[nodiscard]] GlyphData ReadGlyphData(const SelectedFont& font, uint16_t glyph);

}  // namespace hdi
