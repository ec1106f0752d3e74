#include "hdiplot/geometry/clip_area.h"

#include <cmath>
#include <polyclipping/clipper.hpp>

namespace hdiplot {

namespace {

// Clipper works on whole numbers. Up to a million dots, which no sheet has, their products have 64 bits.
constexpr double kPartsOfDot = 1024;

ClipperLib::Paths PathsOf(const std::vector<ClipRing>& rings) {
  ClipperLib::Paths paths;
  for (const ClipRing& ring : rings) {
    auto& path = paths.emplace_back();
    for (const Vec2& p : ring)
      path.emplace_back(std::llround(p.x * kPartsOfDot), std::llround(p.y * kPartsOfDot));
  }
  return paths;
}

ClipArea Combined(ClipperLib::ClipType operation, ClipperLib::PolyFillType rule,
                  const std::vector<ClipRing>& subject, const std::vector<ClipRing>& other) {
  ClipperLib::Clipper clipper;
  // False for rings without an area, which count for nothing.
  clipper.AddPaths(PathsOf(subject), ClipperLib::ptSubject, true);
  clipper.AddPaths(PathsOf(other), ClipperLib::ptClip, true);
  ClipperLib::Paths paths;
  clipper.Execute(operation, paths, rule);
  ClipArea area;
  for (const ClipperLib::Path& path : paths) {
    ClipRing& ring = area.emplace_back();
    for (const ClipperLib::IntPoint& p : path) {
      ring.push_back({static_cast<double>(p.X) / kPartsOfDot, static_cast<double>(p.Y) / kPartsOfDot});
    }
  }
  return area;
}

}  // namespace

ClipArea Common(const ClipArea& a, const ClipArea& b) {
  return Combined(ClipperLib::ctIntersection, ClipperLib::pftNonZero, a, b);
}

ClipArea Without(const ClipArea& area, const ClipArea& hole) {
  return Combined(ClipperLib::ctDifference, ClipperLib::pftNonZero, area, hole);
}

ClipArea EvenOddArea(const std::vector<ClipRing>& rings) {
  return Combined(ClipperLib::ctUnion, ClipperLib::pftEvenOdd, rings, {});
}

}  // namespace hdiplot
