// Outlines of polylines that have a width.
#include "host/hdiplot/plot/polyline.h"

#include <gtest/gtest.h>

namespace hdiplot {
namespace {

double Area(const std::vector<Vec2>& ring) {
  double twice = 0;
  for (size_t i = 0; i < ring.size(); ++i) twice += Cross(ring[i], ring[(i + 1) % ring.size()]);
  return std::abs(twice) / 2;
}

PolyVertex Vertex(double x, double y, double startWidth, double endWidth, double bulge = 0) {
  return {{x, y}, bulge, startWidth, endWidth};
}

TEST(SegmentOutline, MeetsItsNeighbourInTheMiter) {
  const PolylineEntity corner{{Vertex(0, 0, 2, 2), Vertex(10, 0, 2, 2), Vertex(10, 10, 2, 0)}, false};
  const auto first = SegmentOutline(corner, 0, 0.1);
  const auto second = SegmentOutline(corner, 1, 0.1);
  // Left and right of the corner, in both outlines.
  const Vec2 inner{9, 1};
  const Vec2 outer{11, -1};
  EXPECT_LT(Length(first[1] - inner), 1e-9);
  EXPECT_LT(Length(first[2] - outer), 1e-9);
  EXPECT_LT(Length(second[0] - inner), 1e-9);
  EXPECT_LT(Length(second[3] - outer), 1e-9);
}

TEST(SegmentOutline, CutsSharpAndUnequalCornersSquare) {
  const PolylineEntity sharp{{Vertex(0, 0, 2, 2), Vertex(10, 0, 2, 2), Vertex(0, 0.5, 2, 2)}, false};
  EXPECT_LT(Length(SegmentOutline(sharp, 0, 0.1)[1] - Vec2{10, 1}), 1e-9);
  const PolylineEntity unequal{{Vertex(0, 0, 2, 2), Vertex(10, 0, 1, 1), Vertex(10, 10, 1, 1)}, false};
  EXPECT_LT(Length(SegmentOutline(unequal, 0, 0.1)[1] - Vec2{10, 1}), 1e-9);
}

TEST(SegmentOutline, FollowsABend) {
  for (const double bulge : {1.0, -1.0}) {
    // Half a ring of radii 4 and 6.
    const PolylineEntity half{{Vertex(-5, 0, 2, 2, bulge), Vertex(5, 0, 2, 2)}, false};
    EXPECT_NEAR(Area(SegmentOutline(half, 0, 0.001)), 3.14159265 * (36 - 16) / 2, 0.05);
  }
}

}  // namespace
}  // namespace hdiplot
