// Polylines, segment by segment.
#pragma once

#include <optional>

#include "hdiplot/geometry/curves.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

struct PolySegment {
  Vec2 from;
  Vec2 to;
  std::optional<ConicArc> arc;  // none: straight
  double startWidth = 0;
  double endWidth = 0;
};

[[nodiscard]] size_t SegmentCount(const PolylineEntity& polyline);
[[nodiscard]] PolySegment SegmentOf(const PolylineEntity& polyline, size_t index);

// The polyline's one width, when all its segments have the same; 0 for a line of the pen's width.
[[nodiscard]] std::optional<double> ConstantWidth(const PolylineEntity& polyline);

[[nodiscard]] double LargestWidth(const PolylineEntity& polyline);

// The outline of a segment that has a width, without its first point again at the end. Where a straight
// segment meets a straight one that is as wide there, both end in the line that halves their angle, so that
// they close up; a corner sharper than kSharpestMiter is cut off square instead.
[[nodiscard]] std::vector<Vec2> SegmentOutline(const PolylineEntity& polyline, size_t index,
                                               double tolerance);

// Half the width of a corner, from inner to outer point, over the half width of the line.
inline constexpr double kSharpestMiter = 4;

}  // namespace hdiplot
