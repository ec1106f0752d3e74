// Entities with an extrusion direction: mirrored for (0,0,-1), projected for any other.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "tests/hdiplot_dxf/dxf_writing.h"

namespace hdiplot {
namespace {

using dxf_writing::Read;
using dxf_writing::ReadFirst;
using dxf_writing::WithSections;

constexpr double kPi = std::numbers::pi;
const std::string kFromBelow = "|210 0|220 0|230 -1";

void ExpectNear(Vec2 point, double x, double y) {
  EXPECT_NEAR(point.x, x, 1e-9);
  EXPECT_NEAR(point.y, y, 1e-9);
}

Vec2 At(const EllipseEntity& e, double t) {
  return {e.center.x + e.majorAxis.x * std::cos(t) + e.minorAxis.x * std::sin(t),
          e.center.y + e.majorAxis.y * std::cos(t) + e.minorAxis.y * std::sin(t)};
}

TEST(Planes, FromBelowArcsAreMirrored) {
  const auto arc = ReadFirst<ArcEntity>("0 ARC|10 5|20 1|40 2|50 0|51 90" + kFromBelow);
  EXPECT_EQ(arc.center, (Vec2{-5, 1}));
  EXPECT_NEAR(arc.startAngle, kPi / 2, 1e-12);
  EXPECT_NEAR(arc.endAngle, kPi, 1e-12);
}

TEST(Planes, FromBelowEllipsesStayInPlace) {
  const auto ellipse =
      ReadFirst<EllipseEntity>("0 ELLIPSE|10 1|20 2|11 4|21 0|40 0.5|41 0|42 1" + kFromBelow);
  EXPECT_EQ(ellipse.center, (Vec2{1, 2}));
  EXPECT_EQ(ellipse.majorAxis, (Vec2{4, 0}));
  EXPECT_EQ(ellipse.minorAxis, (Vec2{0, -2})) << "it runs clockwise";
}

TEST(Planes, FromBelowPolylinesSolidsAndInsertsAreMirrored) {
  const auto polyline =
      ReadFirst<PolylineEntity>("0 LWPOLYLINE|90 2|10 1|20 2|42 0.5|10 3|20 2" + kFromBelow);
  EXPECT_EQ(polyline.vertices[0].point, (Vec2{-1, 2}));
  EXPECT_EQ(polyline.vertices[0].bulge, -0.5);
  const auto old = ReadFirst<PolylineEntity>("0 POLYLINE|66 1" + kFromBelow +
                                             "|0 VERTEX|10 1|20 2|42 1|0 VERTEX|10 3|20 2|0 SEQEND");
  EXPECT_EQ(old.vertices[1].point, (Vec2{-3, 2}));
  EXPECT_EQ(old.vertices[0].bulge, -1);
  EXPECT_EQ(ReadFirst<SolidEntity>("0 SOLID|10 1|20 0|11 2|21 0|12 1|22 1" + kFromBelow).corners[1],
            (Vec2{-2, 0}));
  const Drawing drawing = Read(WithSections("", "", "0 BLOCK|2 A|0 POINT|10 0|20 0|0 ENDBLK",
                                            "0 INSERT|2 A|10 5|20 6|50 30" + kFromBelow));
  const auto& insert = std::get<InsertEntity>(drawing.entities.at(0).shape);
  EXPECT_TRUE(insert.mirrored);
  EXPECT_EQ(insert.at, (Vec2{5, 6})) << "the mirror comes after the insert";
}

// The plane of (0,-1,0) has X as its X and Z as its Y; that of (1,0,0) has Y as its X.
TEST(Planes, UprightPlanesAreSeenEdgeOn) {
  const auto front =
      ReadFirst<PolylineEntity>("0 LWPOLYLINE|90 2|38 7|10 1|20 2|10 3|20 9|210 0|220 -1|230 0");
  ExpectNear(front.vertices[0].point, 1, -7);
  ExpectNear(front.vertices[1].point, 3, -7);
  const auto side =
      ReadFirst<SolidEntity>("0 SOLID|10 1|20 2|30 7|11 3|21 9|31 7|12 4|22 4|32 7|210 1|220 0|230 0");
  ExpectNear(side.corners[0], 7, 1);
  ExpectNear(side.corners[1], 7, 3);
}

// Tilted by 60 degrees around X, a circle is an ellipse of half the height. The plane's X axis is not the
// drawing's: for (0,-a,b) it is (0,0,1) x N = (a,0,0), so it is here.
TEST(Planes, TiltedCirclesAndArcsAreEllipses) {
  const std::string tilt = "|210 0|220 -0.8660254037844386|230 0.5";
  const auto circle = ReadFirst<EllipseEntity>("0 CIRCLE|10 10|20 4|30 0|40 2" + tilt);
  ExpectNear(circle.center, 10, 2);
  EXPECT_NEAR(std::hypot(circle.majorAxis.x, circle.majorAxis.y), 2, 1e-9);
  EXPECT_NEAR(std::hypot(circle.minorAxis.x, circle.minorAxis.y), 1, 1e-9);
  const auto arc = ReadFirst<EllipseEntity>("0 ARC|10 10|20 4|40 2|50 0|51 90" + tilt);
  ExpectNear(At(arc, arc.startParameter), 12, 2);
  ExpectNear(At(arc, arc.endParameter), 10, 3);
}

TEST(Planes, ATiltedBulgeIsCutIntoChords) {
  const auto polyline = ReadFirst<PolylineEntity>(
      "0 LWPOLYLINE|90 2|10 -1|20 0|40 1|41 3|42 1|10 1|20 0|210 0|220 -0.8660254037844386|230 0.5");
  ASSERT_GT(polyline.vertices.size(), 30);
  ExpectNear(polyline.vertices.front().point, -1, 0);
  ExpectNear(polyline.vertices.back().point, 1, 0);
  const PolyVertex& middle = polyline.vertices[polyline.vertices.size() / 2];
  ExpectNear(middle.point, 0, -0.5);
  EXPECT_EQ(middle.bulge, 0);
  EXPECT_NEAR(middle.startWidth, 2, 1e-9);
}

}  // namespace
}  // namespace hdiplot
