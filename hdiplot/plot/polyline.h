// The segments of a polyline, and their outlines.
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

// The width of all segments if they have the same; 0 for a line of the pen's width.
[[nodiscard]] std::optional<double> ConstantWidth(const PolylineEntity& polyline);

[[nodiscard]] double LargestWidth(const PolylineEntity& polyline);

// The outline of a segment with a width, as a ring. Segments of the same width at their common point get
// a mitered joint, also where the width changes; a corner sharper than kSharpestMiter is cut off square.
[[nodiscard]] std::vector<Vec2> SegmentOutline(const PolylineEntity& polyline, size_t index,
                                               double tolerance);

// The miter limit: half the length of the miter over half the width of the line.
inline constexpr double kSharpestMiter = 4;

}  // namespace hdiplot
