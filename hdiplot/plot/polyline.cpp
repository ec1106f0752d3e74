#include "hdiplot/plot/polyline.h"

namespace hdiplot {

namespace {

bool IsStraight(const PolySegment& segment) { return !segment.arc && segment.from != segment.to; }

// From the corner of two straight segments to its left outline point, for a half width of 1. The left normal
// of `own` when the corner is too sharp.
Vec2 MiterOffset(const PolySegment& before, const PolySegment& behind, const PolySegment& own) {
  const Vec2 first = TurnedLeft(Unit(before.to - before.from));
  const Vec2 second = TurnedLeft(Unit(behind.to - behind.from));
  const Vec2 sum = first + second;
  // |sum| is 2 cos of half the turn, and the miter is as long as 1 over that cosine.
  const double squared = Dot(sum, sum);
  if (squared * kSharpestMiter * kSharpestMiter < 4) return TurnedLeft(Unit(own.to - own.from));
  return sum * (2 / squared);
}

std::optional<size_t> Neighbour(const PolylineEntity& polyline, size_t index, bool behind) {
  const size_t count = SegmentCount(polyline);
  if (behind) {
    if (index + 1 < count) return index + 1;
    return polyline.closed ? std::optional<size_t>(0) : std::nullopt;
  }
  if (index > 0) return index - 1;
  return polyline.closed ? std::optional(count - 1) : std::nullopt;
}

// Both sides of a segment, point by point from its start to its end.
class Sides {
 public:
  void Add(Vec2 at, Vec2 offset) {
    left_.push_back(at + offset);
    right_.push_back(at - offset);
  }

  // Up the left side and down the right one.
  [[nodiscard]] std::vector<Vec2> Outline() && {
    left_.insert(left_.end(), right_.rbegin(), right_.rend());
    return std::move(left_);
  }

 private:
  std::vector<Vec2> left_;
  std::vector<Vec2> right_;
};

std::vector<Vec2> BendOutline(const PolySegment& segment, double tolerance) {
  const ConicArc& arc = *segment.arc;
  const double startHalf = segment.startWidth / 2;
  const double endHalf = segment.endWidth / 2;
  // As many steps as the outer rim takes.
  ConicArc rim = arc;
  const double widen = 1 + std::max(startHalf, endHalf) / Length(arc.u);
  rim.u = rim.u * widen;
  rim.v = rim.v * widen;
  std::vector<Vec2> steps;
  AppendFlattened(rim, tolerance, steps);
  const double side = arc.Span() > 0 ? -1 : 1;  // the centre is to the left of a counter-clockwise arc
  Sides sides;
  for (size_t i = 0; i <= steps.size(); ++i) {
    const double part = static_cast<double>(i) / static_cast<double>(steps.size());
    const Vec2 at = arc.At(arc.start + arc.Span() * part);
    sides.Add(at, Unit(at - arc.center) * (side * (startHalf + (endHalf - startHalf) * part)));
  }
  return std::move(sides).Outline();
}

std::vector<Vec2> BarOutline(const PolylineEntity& polyline, size_t index, const PolySegment& segment) {
  Vec2 startOffset = TurnedLeft(Unit(segment.to - segment.from));
  Vec2 endOffset = startOffset;
  if (const auto other = Neighbour(polyline, index, false)) {
    const PolySegment before = SegmentOf(polyline, *other);
    if (IsStraight(before) && before.endWidth == segment.startWidth) {
      startOffset = MiterOffset(before, segment, segment);
    }
  }
  if (const auto other = Neighbour(polyline, index, true)) {
    const PolySegment behind = SegmentOf(polyline, *other);
    if (IsStraight(behind) && behind.startWidth == segment.endWidth) {
      endOffset = MiterOffset(segment, behind, segment);
    }
  }
  Sides sides;
  sides.Add(segment.from, startOffset * (segment.startWidth / 2));
  sides.Add(segment.to, endOffset * (segment.endWidth / 2));
  return std::move(sides).Outline();
}

}  // namespace

size_t SegmentCount(const PolylineEntity& polyline) {
  const size_t vertices = polyline.vertices.size();
  if (vertices < 2) return 0;
  return polyline.closed ? vertices : vertices - 1;
}

PolySegment SegmentOf(const PolylineEntity& polyline, size_t index) {
  const PolyVertex& from = polyline.vertices[index];
  const PolyVertex& to = polyline.vertices[(index + 1) % polyline.vertices.size()];
  return {from.point, to.point, BulgeArc(from.point, to.point, from.bulge), from.startWidth, from.endWidth};
}

std::optional<double> ConstantWidth(const PolylineEntity& polyline) {
  const size_t count = SegmentCount(polyline);
  if (count == 0) return 0;
  const double width = polyline.vertices[0].startWidth;
  for (size_t i = 0; i < count; ++i) {
    const PolyVertex& vertex = polyline.vertices[i];
    if (vertex.startWidth != width || vertex.endWidth != width) return std::nullopt;
  }
  return width;
}

double LargestWidth(const PolylineEntity& polyline) {
  double width = 0;
  for (size_t i = 0; i < SegmentCount(polyline); ++i) {
    width = std::max({width, polyline.vertices[i].startWidth, polyline.vertices[i].endWidth});
  }
  return width;
}

std::vector<Vec2> SegmentOutline(const PolylineEntity& polyline, size_t index, double tolerance) {
  const PolySegment segment = SegmentOf(polyline, index);
  return segment.arc ? BendOutline(segment, tolerance) : BarOutline(polyline, index, segment);
}

}  // namespace hdiplot
