// What areas of polygons have in common, and what one has that another has not.
#pragma once

#include <vector>

#include "hdiplot/geometry/points.h"

namespace hdiplot {

using ClipRing = std::vector<Vec2>;  // dots; closed from its last point to its first

// What rings of plottable points, which may cross themselves and each other, enclose by the nonzero winding
// rule.
using ClipArea = std::vector<ClipRing>;

// All of these give rings that cross nothing, holes wound the other way than what is around them, with
// coordinates in whole parts of 1/1024 dot. Without rings where nothing is left.
[[nodiscard]] ClipArea Common(const ClipArea& a, const ClipArea& b);
[[nodiscard]] ClipArea Without(const ClipArea& area, const ClipArea& hole);
// The area that the rings enclose by the even-odd rule.
[[nodiscard]] ClipArea EvenOddArea(const std::vector<ClipRing>& rings);

}  // namespace hdiplot
