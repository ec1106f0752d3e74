#include "hdiplot/plot/polyline.h"

namespace hdiplot {

namespace {

// A side of a segment at one of its ends.
struct SideEnd {
  Vec2 at;
  Vec2 along;  // of length 1
};

Vec2 DirectionAt(const PolySegment& segment, bool atEnd) {
  if (!segment.arc) return Unit(segment.to - segment.from);
  const ConicArc& arc = *segment.arc;
  return Unit(arc.DerivativeAt(atEnd ? arc.end : arc.start)) * (arc.Span() < 0 ? -1 : 1);
}

// `side`: 1 to the left, -1 to the right. The sides of a straight segment run towards each other when its
// width changes.
SideEnd SideAt(const PolySegment& segment, bool atEnd, double side) {
  const Vec2 normal = TurnedLeft(DirectionAt(segment, atEnd)) * (side / 2);
  const Vec2 at = atEnd ? segment.to + normal * segment.endWidth : segment.from + normal * segment.startWidth;
  if (segment.arc) return {at, DirectionAt(segment, atEnd)};
  return {at, Unit(segment.to - segment.from + normal * (segment.endWidth - segment.startWidth))};
}

// Where the sides of two segments meet that have one width at their joint. None when the corner is too sharp.
std::optional<Vec2> MiterPoint(const PolySegment& before, const PolySegment& behind, double side) {
  const SideEnd first = SideAt(before, true, side);
  const SideEnd second = SideAt(behind, false, side);
  const double turn = Cross(first.along, second.along);
  if (std::abs(turn) < 1e-9)
    return Dot(first.along, second.along) > 0 ? std::optional(first.at) : std::nullopt;
  const Vec2 meeting = first.at + first.along * (Cross(second.at - first.at, second.along) / turn);
  const bool isSharp = Length(meeting - before.to) > kSharpestMiter * before.endWidth / 2;
  return isSharp ? std::nullopt : std::optional(meeting);
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
  void Add(Vec2 at, Vec2 offset) { AddPoints(at + offset, at - offset); }
  void AddPoints(Vec2 left, Vec2 right) {
    left_.push_back(left);
    right_.push_back(right);
  }
  // The start, or else the end, of segment `index`, mitered with its neighbour there.
  void AddEnd(const PolylineEntity& polyline, size_t index, bool atEnd) {
    const PolySegment own = SegmentOf(polyline, index);
    const auto other = Neighbour(polyline, index, atEnd);
    if (other) {
      const PolySegment next = SegmentOf(polyline, *other);
      const PolySegment& before = atEnd ? own : next;
      const PolySegment& behind = atEnd ? next : own;
      const bool isWhole = HasDirection(next) && before.endWidth == behind.startWidth;
      const auto left = isWhole ? MiterPoint(before, behind, 1) : std::nullopt;
      const auto right = isWhole ? MiterPoint(before, behind, -1) : std::nullopt;
      if (left && right) return AddPoints(*left, *right);
    }
    AddPoints(SideAt(own, atEnd, 1).at, SideAt(own, atEnd, -1).at);
  }

  // Up the left side and down the right one.
  [[nodiscard]] std::vector<Vec2> Outline() && {
    left_.insert(left_.end(), right_.rbegin(), right_.rend());
    return std::move(left_);
  }

 private:
  static bool HasDirection(const PolySegment& segment) { return segment.arc || segment.from != segment.to; }

  std::vector<Vec2> left_;
  std::vector<Vec2> right_;
};

std::vector<Vec2> BendOutline(const PolylineEntity& polyline, size_t index, const PolySegment& segment,
                              double tolerance) {
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
  sides.AddEnd(polyline, index, false);
  for (size_t i = 1; i < steps.size(); ++i) {
    const double part = static_cast<double>(i) / static_cast<double>(steps.size());
    const Vec2 at = arc.At(arc.start + arc.Span() * part);
    sides.Add(at, Unit(at - arc.center) * (side * (startHalf + (endHalf - startHalf) * part)));
  }
  sides.AddEnd(polyline, index, true);
  return std::move(sides).Outline();
}

std::vector<Vec2> BarOutline(const PolylineEntity& polyline, size_t index) {
  Sides sides;
  sides.AddEnd(polyline, index, false);
  sides.AddEnd(polyline, index, true);
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
  return segment.arc ? BendOutline(polyline, index, segment, tolerance) : BarOutline(polyline, index);
}

}  // namespace hdiplot
