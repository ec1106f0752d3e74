// HATCH: boundaries of all kinds, patterns, and its plane.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numbers>

#include "tests/hdiplot_dxf/dxf_writing.h"

namespace hdiplot {
namespace {

using dxf_writing::ReadFirst;

constexpr double kPi = std::numbers::pi;

std::string Hatch(const std::string& head, const std::string& paths, const std::string& tail = "") {
  return "0 HATCH|100 AcDbHatch|10 0|20 0|30 0" + head + paths + "|75 0|76 1" + tail;
}

const std::string kSquare = "|92 7|72 0|73 1|93 4|10 0|20 0|10 4|20 0|10 4|20 4|10 0|20 4|97 0";

TEST(Hatch, SolidWithAnIslandOfEdges) {
  const auto hatch = ReadFirst<HatchEntity>(Hatch(
      "|210 0|220 0|230 1|2 SOLID|70 1|71 0|91 2",
      kSquare + "|92 16|93 4|72 1|10 1|20 1|11 3|21 1|72 2|10 3|20 2|40 1|50 270|51 90|73 1|"
                "72 3|10 2|20 3|11 1|21 0|40 0.5|50 0|51 180|73 1|72 2|10 1|20 2|40 1|50 90|51 270|73 0|"
                "97 2|330 1F|330 2A",
      "|98 1|10 0|20 0"));
  ASSERT_EQ(hatch.loops.size(), 2);
  EXPECT_EQ(hatch.loops[0].polyline.vertices.size(), 4);
  ASSERT_EQ(hatch.loops[1].edges.size(), 4);
  EXPECT_EQ(std::get<LineEntity>(hatch.loops[1].edges[0]).end, (Vec2{3, 1}));
  const auto& arc = std::get<ArcEntity>(hatch.loops[1].edges[1]);
  EXPECT_NEAR(arc.startAngle, 1.5 * kPi, 1e-12);
  EXPECT_NEAR(arc.endAngle, 2.5 * kPi, 1e-12);
  const auto& ellipse = std::get<EllipseEntity>(hatch.loops[1].edges[2]);
  EXPECT_EQ(ellipse.minorAxis, (Vec2{0, 0.5}));
  EXPECT_NEAR(ellipse.endParameter, kPi, 1e-12);
  // Clockwise from 270 degrees (-90) to 90 (-270), by the left.
  const auto& clockwise = std::get<ArcEntity>(hatch.loops[1].edges[3]);
  EXPECT_NEAR(clockwise.startAngle, -0.5 * kPi, 1e-12);
  EXPECT_NEAR(clockwise.endAngle, -1.5 * kPi, 1e-12);
}

TEST(Hatch, SplineEdgesWithAndWithoutFitData) {
  const std::string spline =
      "|72 4|94 2|73 1|74 0|95 6|96 3|40 0|40 0|40 0|40 1|40 1|40 1|"
      "10 0|20 0|42 1|10 1|20 2|42 0.5|10 2|20 0|42 1";
  const std::string back = "|72 1|10 2|20 0|11 0|21 0";
  for (const char* fit : {"", "|97 0", "|97 2|11 0|21 0|11 2|21 0|12 1|22 0|13 1|23 0"}) {
    std::string paths = "|92 1|93 2";
    paths.append(spline).append(fit).append(back).append("|97 1|330 A");
    paths.append("|92 1|93 2").append(back).append(spline).append(fit).append("|97 1|330 B");
    const auto hatch = ReadFirst<HatchEntity>(Hatch("|2 SOLID|70 1|91 2", paths));
    ASSERT_EQ(hatch.loops.size(), 2) << fit;
    const auto& edge = std::get<SplineEntity>(hatch.loops[1].edges.at(1));
    EXPECT_EQ(edge.degree, 2);
    EXPECT_EQ(edge.controlPoints.size(), 3);
    EXPECT_EQ(edge.weights, (std::vector<double>{1, 0.5, 1}));
  }
}

TEST(Hatch, GradientsHaveAFormTwoColorsAndAPlane) {
  const auto read = [](const std::string& gradient, const std::string& head = "") {
    return ReadFirst<HatchEntity>(Hatch(head + "|2 SOLID|70 1|91 1", kSquare, "|98 0" + gradient)).gradient;
  };
  const auto two = read(
      "|450 1|451 0|460 1.5707963267948966|461 1|452 0|462 1|453 2|463 0|63 5|421 255|463 1|63 2|470 "
      "INVCYLINDER",
      "|210 0|220 0|230 -1");
  ASSERT_TRUE(two);
  EXPECT_EQ(two->form, HatchGradient::Form::kCylinder);
  EXPECT_TRUE(two->inverted);
  EXPECT_EQ(two->first, (EntityColor{EntityColor::Kind::kTrue, 255}));
  EXPECT_EQ(two->last, (EntityColor{EntityColor::Kind::kIndex, 2}));
  EXPECT_LT(two->tint, 0);
  EXPECT_EQ(two->shift, 1);
  EXPECT_NEAR(two->right.y, 1, 1e-12);
  EXPECT_NEAR(two->up.x, 1, 1e-12) << "seen from below";

  const auto one = read("|450 1|452 1|462 0.25|453 1|463 0|421 16711680|470 NEWER");
  ASSERT_TRUE(one);
  EXPECT_EQ(one->form, HatchGradient::Form::kLinear);
  EXPECT_EQ(one->tint, 0.25);
  EXPECT_FALSE(read("|450 0|453 0"));
  EXPECT_FALSE(read("|450 1|470 LINEAR")) << "without colours";
  EXPECT_THAT(dxf_writing::ErrorOf(
                  dxf_writing::WithEntities(Hatch("|2 SOLID|70 1|91 1", kSquare, "|450 1|453 2|463 0|63 1"))),
              testing::HasSubstr("group 453 of HATCH says 2, but there are 1"));
}

TEST(Hatch, SeenFromBelowAllIsMirrored) {
  const auto hatch = ReadFirst<HatchEntity>(Hatch("|210 0|220 0|230 -1|2 ANSI31|70 0|91 2",
                                                  "|92 2|72 1|73 1|93 2|10 1|20 0|42 0.5|10 3|20 0|42 1|97 "
                                                  "0|92 1|93 2|72 2|10 1|20 1|40 1|50 0|51 90|73 1|"
                                                  "72 3|10 1|20 1|11 2|21 0|40 0.5|50 0|51 90|73 1|97 0",
                                                  "|78 1|53 30|43 1|44 2|45 3|46 4|79 1|49 5"));
  EXPECT_EQ(hatch.loops[0].polyline.vertices[0].point, (Vec2{-1, 0}));
  EXPECT_EQ(hatch.loops[0].polyline.vertices[0].bulge, -0.5);
  const auto& arc = std::get<ArcEntity>(hatch.loops[1].edges[0]);
  EXPECT_EQ(arc.center, (Vec2{-1, 1}));
  EXPECT_NEAR(arc.startAngle, kPi, 1e-12);
  EXPECT_NEAR(arc.endAngle, kPi / 2, 1e-12) << "it runs clockwise now";
  const auto& ellipse = std::get<EllipseEntity>(hatch.loops[1].edges[1]);
  EXPECT_EQ(ellipse.majorAxis, (Vec2{-2, 0}));
  EXPECT_EQ(ellipse.minorAxis, (Vec2{0, 1}));
  EXPECT_NEAR(hatch.lines[0].angle, kPi * 5 / 6, 1e-12);
  EXPECT_EQ(hatch.lines[0].base, (Vec2{-1, 2}));
  EXPECT_EQ(hatch.lines[0].offset, (Vec2{-3, 4}));
  EXPECT_NEAR(hatch.lines[0].dashes[0], 5, 1e-12);
}

}  // namespace
}  // namespace hdiplot
