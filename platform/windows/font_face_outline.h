// Glyphs' contours as curves, and how high these reach.
#pragma once

#include <vector>

#include "platform/font_faces.h"
#include "platform/windows/font_face_glyph_data.h"

namespace hdi {

// Multiplied by `scale`, and with the glyph's origin at 0.
[[nodiscard]] std::vector<GlyphContour> MakeContours(const GlyphData& glyph, double scale);

struct VerticalExtent {
  double lowest = 0;
  double highest = 0;
};

// How far the curves of a glyph go, which is less than their control points; it takes in the base line.
[[nodiscard]] VerticalExtent ExtentOf(const std::vector<GlyphContour>& contours);

}  // namespace hdi
