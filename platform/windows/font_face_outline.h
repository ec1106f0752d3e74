// Converts glyph contours to curves and measures their height.
#pragma once

#include <vector>

#include "platform/font_faces.h"
#include "platform/windows/font_face_glyph_data.h"

namespace hdi {

// Scales by `scale` and moves the glyph's origin to 0.
[[nodiscard]] std::vector<GlyphContour> MakeContours(const GlyphData& glyph, double scale);

struct VerticalExtent {
  double lowest = 0;
  double highest = 0;
};

// Vertical extent of the curves, not their control points; includes the baseline.
[[nodiscard]] VerticalExtent ExtentOf(const std::vector<GlyphContour>& contours);

}  // namespace hdi
