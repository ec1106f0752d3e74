#include "hdiplot/geometry/clipping.h"

#include <cmath>
#include <limits>
#include <polyclipping/clipper.hpp>

namespace hdiplot {

namespace {

// The part of `segment` with `coordinate` from -limit to limit.
std::optional<Segment> ClippedToBand(const Segment& segment, double Vec2::*coordinate, double limit) {
  const double from = segment.from.*coordinate;
  const double to = segment.to.*coordinate;
  if ((from > limit && to > limit) || (from < -limit && to < -limit)) return std::nullopt;
  const auto within = [&](Vec2 p) {
    const double bound = std::clamp(p.*coordinate, -limit, limit);
    if (p.*coordinate == bound) return p;
    Vec2 at = Between(segment.from, segment.to, (bound - from) / (to - from));
    at.*coordinate = bound;
    return at;
  };
  return Segment{within(segment.from), within(segment.to)};
}

// Clipper works on integers. Products of coordinates below a million at this scale fit 64 bits.
constexpr double kUnits = 1024;

ClipperLib::Paths PathsOf(const std::vector<Ring>& rings) {
  ClipperLib::Paths paths;
  for (const Ring& ring : rings) {
    auto& path = paths.emplace_back();
    for (const Vec2& p : ring) path.emplace_back(std::llround(p.x * kUnits), std::llround(p.y * kUnits));
  }
  return paths;
}

Area Combined(ClipperLib::ClipType operation, ClipperLib::PolyFillType rule, const std::vector<Ring>& subject,
              const std::vector<Ring>& other) {
  ClipperLib::Clipper clipper;
  // AddPaths returns false for rings without an area, which do not matter.
  clipper.AddPaths(PathsOf(subject), ClipperLib::ptSubject, true);
  clipper.AddPaths(PathsOf(other), ClipperLib::ptClip, true);
  ClipperLib::Paths paths;
  clipper.Execute(operation, paths, rule);
  Area area;
  for (const ClipperLib::Path& path : paths) {
    Ring& ring = area.emplace_back();
    for (const ClipperLib::IntPoint& p : path) {
      ring.push_back({static_cast<double>(p.X) / kUnits, static_cast<double>(p.Y) / kUnits});
    }
  }
  return area;
}

}  // namespace

std::optional<Segment> ClippedToSquare(const Segment& segment, double limit) {
  const auto inBand = ClippedToBand(segment, &Vec2::x, limit);
  return inBand ? ClippedToBand(*inBand, &Vec2::y, limit) : std::nullopt;
}

std::optional<Segment> ClippedRay(Vec2 base, Vec2 direction, bool isWhole, const Box& box) {
  constexpr double kEndless = std::numeric_limits<double>::infinity();
  double from = isWhole ? -kEndless : 0;
  double to = kEndless;
  for (double Vec2::*const axis : {&Vec2::x, &Vec2::y}) {
    const double step = direction.*axis;
    if (step == 0) {
      if (base.*axis < box.low.*axis || base.*axis > box.high.*axis) return std::nullopt;
      continue;
    }
    const double low = (box.low.*axis - base.*axis) / step;
    const double high = (box.high.*axis - base.*axis) / step;
    from = std::max(from, std::min(low, high));
    to = std::min(to, std::max(low, high));
  }
  if (!(from <= to) || !std::isfinite(from) || !std::isfinite(to)) return std::nullopt;
  return Segment{base + direction * from, base + direction * to};
}

Ring CornersOf(const Box& box) {
  return {box.low, {box.high.x, box.low.y}, box.high, {box.low.x, box.high.y}};
}

Ring Parallelogram(Vec2 corner, Vec2 right, Vec2 up) {
  return {corner, corner + right, corner + right + up, corner + up};
}

Ring Mapped(Ring ring, const Affine& map) {
  for (Vec2& p : ring) p = map(p);
  return ring;
}

Box BoxOf(const std::vector<Vec2>& points) {
  Box box;
  for (const Vec2& p : points) box.Add(p);
  return box;
}

Box BoxOf(const std::vector<std::vector<Vec2>>& lines) {
  Box box;
  for (const auto& line : lines) {
    for (const Vec2& p : line) box.Add(p);
  }
  return box;
}

Area Common(const Area& a, const Area& b) {
  return Combined(ClipperLib::ctIntersection, ClipperLib::pftNonZero, a, b);
}

Area Without(const Area& area, const Area& hole) {
  return Combined(ClipperLib::ctDifference, ClipperLib::pftNonZero, area, hole);
}

Area EvenOddArea(const std::vector<Ring>& rings) {
  return Combined(ClipperLib::ctUnion, ClipperLib::pftEvenOdd, rings, {});
}

}  // namespace hdiplot
