#include "platform/glyph_contours.h"

#include <vector>

namespace hdi {

GlyphPoint Between(const GlyphPoint& from, const GlyphPoint& to, double part) {
  return {from.x + (to.x - from.x) * part, from.y + (to.y - from.y) * part};
}

void AddLine(GlyphContour& contour, const GlyphPoint& end) {
  const GlyphPoint start = contour.back();
  if (start.x == end.x && start.y == end.y) return;
  AddCubic(contour, Between(start, end, 1.0 / 3), Between(start, end, 2.0 / 3), end);
}

void AddQuadratic(GlyphContour& contour, const GlyphPoint& control, const GlyphPoint& end) {
  AddCubic(contour, Between(contour.back(), control, 2.0 / 3), Between(end, control, 2.0 / 3), end);
}

void AddCubic(GlyphContour& contour, const GlyphPoint& control1, const GlyphPoint& control2,
              const GlyphPoint& end) {
  contour.insert(contour.end(), {control1, control2, end});
}

void RemoveAnchors(std::vector<GlyphContour>& contours) {
  std::erase_if(contours, [](const GlyphContour& contour) { return contour.size() == 1; });
}

}  // namespace hdi
