// Clipping of segments and of areas.
#pragma once

#include <optional>
#include <vector>

#include "hdiplot/geometry/transform.h"

namespace hdiplot {

struct Segment {
  Vec2 from;
  Vec2 to;
};

// The part of `segment` within `limit` of both axes. None when nothing is left.
[[nodiscard]] std::optional<Segment> ClippedToSquare(const Segment& segment, double limit);

// The part within `box` of the line through `base` along `direction`; `isWhole`: backwards as well. None when
// nothing is left, or when there is no direction.
[[nodiscard]] std::optional<Segment> ClippedRay(Vec2 base, Vec2 direction, bool isWhole, const Box& box);

using Ring = std::vector<Vec2>;  // closed from its last point to its first

// What its rings, which may cross themselves and each other, enclose by the nonzero winding rule.
using Area = std::vector<Ring>;

// The corners of a box in order.
[[nodiscard]] Ring CornersOf(const Box& box);
// The corners of a parallelogram in order, from `corner` along `right` and `up`.
[[nodiscard]] Ring Parallelogram(Vec2 corner, Vec2 right, Vec2 up);
[[nodiscard]] Ring Mapped(Ring ring, const Affine& map);
[[nodiscard]] Box BoxOf(const std::vector<Vec2>& points);
[[nodiscard]] Box BoxOf(const std::vector<std::vector<Vec2>>& lines);

// Each returns rings that do not cross, holes wound opposite to what surrounds them, with coordinates in
// multiples of 1/1024. No rings when nothing is left. Coordinates are up to a million.
[[nodiscard]] Area Common(const Area& a, const Area& b);
[[nodiscard]] Area Without(const Area& area, const Area& hole);
// The area that the rings enclose by the even-odd rule.
[[nodiscard]] Area EvenOddArea(const std::vector<Ring>& rings);

}  // namespace hdiplot
