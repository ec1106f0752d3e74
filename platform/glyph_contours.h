// Appends the segments of a glyph's outline to a contour, as cubic curves.
#pragma once

#include "platform/font_faces.h"

namespace hdi {

// The point `part` of the way between two.
[[nodiscard]] GlyphPoint Between(const GlyphPoint& from, const GlyphPoint& to, double part);

// These continue the contour, which has a start point. AddLine leaves out lines of no length.
void AddLine(GlyphContour& contour, const GlyphPoint& end);
void AddQuadratic(GlyphContour& contour, const GlyphPoint& control, const GlyphPoint& end);
void AddCubic(GlyphContour& contour, const GlyphPoint& control1, const GlyphPoint& control2,
              const GlyphPoint& end);

// Removes contours of a single point, which only serve as anchors.
void RemoveAnchors(std::vector<GlyphContour>& contours);

}  // namespace hdi
