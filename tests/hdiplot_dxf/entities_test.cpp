// Each entity of the drawing's plane, with what dxflib leaves out and what files leave to be guessed.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "tests/hdiplot_dxf/dxf_writing.h"

namespace hdiplot {
namespace {

using dxf_writing::Read;
using dxf_writing::ReadFirst;
using dxf_writing::WithEntities;
using dxf_writing::WithSections;

constexpr double kPi = std::numbers::pi;

std::vector<Vec2> PointsOf(const PolylineEntity& polyline) {
  std::vector<Vec2> points;
  for (const PolyVertex& vertex : polyline.vertices) points.push_back(vertex.point);
  return points;
}

using Points = std::vector<Vec2>;

TEST(Entities, LineAndPointTakeWorldCoordinates) {
  const auto line = ReadFirst<LineEntity>("0 LINE|10 1|20 +2.5|30 9|11 -3e1|21 .5|31 9");
  EXPECT_EQ(line.start, (Vec2{1, 2.5}));
  EXPECT_EQ(line.end, (Vec2{-30, 0.5}));
  EXPECT_EQ(ReadFirst<PointEntity>("0 POINT|10 4|20 5").point, (Vec2{4, 5}));
}

TEST(Entities, ArcsRunCounterClockwiseFromStartToAHigherEnd) {
  const auto arc = ReadFirst<ArcEntity>("0 ARC|10 1|20 2|40 3|50 270|51 90");
  EXPECT_EQ(arc.center, (Vec2{1, 2}));
  EXPECT_DOUBLE_EQ(arc.radius, 3);
  EXPECT_DOUBLE_EQ(arc.startAngle, 1.5 * kPi);
  EXPECT_DOUBLE_EQ(arc.endAngle, 2.5 * kPi);

  const auto whole = ReadFirst<ArcEntity>("0 ARC|10 0|20 0|40 1|50 90|51 90");
  EXPECT_DOUBLE_EQ(whole.endAngle - whole.startAngle, 2 * kPi);

  // Far from any real angle: in reach, and not one turn after the other.
  const auto wild = ReadFirst<ArcEntity>("0 ARC|10 0|20 0|40 1|50 -1e20|51 1e25");
  EXPECT_LT(std::fabs(wild.startAngle), 4 * kPi);
  EXPECT_GT(wild.endAngle, wild.startAngle);
  EXPECT_LE(wild.endAngle - wild.startAngle, 2 * kPi);

  const auto circle = ReadFirst<ArcEntity>("0 CIRCLE|10 5|20 6|40 7");
  EXPECT_EQ(circle.center, (Vec2{5, 6}));
  EXPECT_DOUBLE_EQ(circle.endAngle - circle.startAngle, 2 * kPi);
}

TEST(Entities, EllipsesHaveBothAxesAndARisingParameter) {
  const auto ellipse = ReadFirst<EllipseEntity>("0 ELLIPSE|10 1|20 2|11 0|21 4|40 0.25|41 5|42 1");
  EXPECT_EQ(ellipse.center, (Vec2{1, 2}));
  EXPECT_EQ(ellipse.majorAxis, (Vec2{0, 4}));
  EXPECT_EQ(ellipse.minorAxis, (Vec2{-1, 0}));
  EXPECT_DOUBLE_EQ(ellipse.startParameter, 5);
  EXPECT_DOUBLE_EQ(ellipse.endParameter, 1 + 2 * kPi);

  const auto whole = ReadFirst<EllipseEntity>("0 ELLIPSE|10 1|20 2|11 0|21 4|40 0.25|41 0|42 6.283186");
  EXPECT_DOUBLE_EQ(whole.endParameter, 2 * kPi);
}

TEST(Entities, LwPolylinesKeepBulgesAndWidths) {
  const auto polyline = ReadFirst<PolylineEntity>(
      "0 LWPOLYLINE|90 3|70 129|43 0.5|10 0|20 0|42 1|10 4|20 0|40 1|41 2|91 0|10 4|20 4");
  EXPECT_TRUE(polyline.closed);
  EXPECT_EQ(PointsOf(polyline), (Points{{0, 0}, {4, 0}, {4, 4}}));
  EXPECT_EQ(polyline.vertices[0].bulge, 1);
  EXPECT_EQ(polyline.vertices[0].startWidth, 0.5);
  EXPECT_EQ(polyline.vertices[1].startWidth, 1);
  EXPECT_EQ(polyline.vertices[1].endWidth, 2);
  EXPECT_EQ(polyline.vertices[2].endWidth, 0.5);
}

TEST(Entities, OldPolylinesInheritWidthsAndLeaveTheFrameOut) {
  const auto plain = ReadFirst<PolylineEntity>(
      "0 POLYLINE|66 1|70 0|40 2|41 3|0 VERTEX|10 1|20 1|42 -0.5|0 VERTEX|10 2|20 1|40 7|0 SEQEND");
  EXPECT_FALSE(plain.closed);
  EXPECT_EQ(plain.vertices[0].bulge, -0.5);
  EXPECT_EQ(plain.vertices[0].endWidth, 3);
  EXPECT_EQ(plain.vertices[1].startWidth, 7);

  const auto fitted = ReadFirst<PolylineEntity>(
      "0 POLYLINE|66 1|70 4|0 VERTEX|10 9|20 9|70 16|0 VERTEX|10 1|20 1|70 8|0 VERTEX|10 2|20 1|70 8|0 "
      "SEQEND");
  EXPECT_EQ(PointsOf(fitted), (Points{{1, 1}, {2, 1}}));

  const auto inSpace = ReadFirst<PolylineEntity>(
      "0 POLYLINE|66 1|70 9|40 1|0 VERTEX|10 1|20 1|30 7|70 32|42 1|0 VERTEX|10 2|20 1|30 8|70 32|0 SEQEND");
  EXPECT_TRUE(inSpace.closed);
  EXPECT_EQ(PointsOf(inSpace), (Points{{1, 1}, {2, 1}}));
  EXPECT_EQ(inSpace.vertices[0].bulge, 0);
  EXPECT_EQ(inSpace.vertices[0].startWidth, 0);
}

TEST(Entities, MeshesBecomeTheirLines) {
  const auto mesh = ReadFirst<MeshEntity>(
      "0 POLYLINE|66 1|70 48|71 2|72 3|0 VERTEX|10 0|20 0|0 VERTEX|10 1|20 0|0 VERTEX|10 2|20 0|"
      "0 VERTEX|10 0|20 5|0 VERTEX|10 1|20 5|0 VERTEX|10 2|20 5|0 SEQEND");
  const std::vector<Points> edges = {{{0, 0}, {1, 0}, {2, 0}, {0, 0}},
                                     {{0, 5}, {1, 5}, {2, 5}, {0, 5}},
                                     {{0, 0}, {0, 5}},
                                     {{1, 0}, {1, 5}},
                                     {{2, 0}, {2, 5}}};
  EXPECT_EQ(mesh.edges, edges);
}

TEST(Entities, PolyfacesDrawSharedEdgesOnceAndHiddenOnesNot) {
  const auto mesh = ReadFirst<MeshEntity>(
      "0 POLYLINE|66 1|70 64|71 4|72 2|"
      "0 VERTEX|10 0|20 0|70 192|0 VERTEX|10 1|20 0|70 192|0 VERTEX|10 1|20 1|70 192|0 VERTEX|10 0|20 1|70 "
      "192|"
      "0 VERTEX|10 0|20 0|70 128|71 1|72 2|73 3|0 VERTEX|10 0|20 0|70 128|71 1|72 3|73 -4|0 SEQEND");
  const std::vector<Points> edges = {{{0, 0}, {1, 0}}, {{1, 0}, {1, 1}}, {{1, 1}, {0, 0}}, {{1, 1}, {0, 1}}};
  EXPECT_EQ(mesh.edges, edges);
}

TEST(Entities, SplinesComeWhole) {
  const auto rational = ReadFirst<SplineEntity>(
      "0 SPLINE|70 5|71 2|72 6|73 3|74 0|40 0|40 0|40 0|40 1|40 1|40 1|10 0|20 0|41 1|10 1|20 1|41 0.5|10 "
      "2|20 0|41 1");
  EXPECT_EQ(rational.degree, 2);
  EXPECT_TRUE(rational.closed);
  EXPECT_EQ(rational.knots, (std::vector<double>{0, 0, 0, 1, 1, 1}));
  EXPECT_EQ(rational.controlPoints, (Points{{0, 0}, {1, 1}, {2, 0}}));
  EXPECT_EQ(rational.weights, (std::vector<double>{1, 0.5, 1}));

  const auto withoutKnots = ReadFirst<SplineEntity>(
      "0 SPLINE|70 8|71 2|10 0|20 0|10 1|20 1|10 2|20 0|10 3|20 3|11 0|21 0|11 3|21 3");
  EXPECT_EQ(withoutKnots.knots, (std::vector<double>{0, 0, 0, 1, 2, 2, 2}));
  EXPECT_TRUE(withoutKnots.weights.empty());
  EXPECT_TRUE(withoutKnots.fitPoints.empty());

  const auto fit = ReadFirst<SplineEntity>("0 SPLINE|71 3|72 0|73 0|74 2|11 1|21 2|31 0|11 3|21 4|31 0");
  EXPECT_TRUE(fit.controlPoints.empty());
  EXPECT_EQ(fit.fitPoints, (Points{{1, 2}, {3, 4}}));
}

// dxflib keeps its arrays from one entity to the next.
TEST(Entities, ASplineTakesNothingFromTheOneBefore) {
  const Drawing drawing =
      Read(WithEntities("0 SPLINE|71 1|72 5|73 3|40 0|40 0|40 1|40 2|40 2|10 0|20 0|10 1|20 1|10 2|20 2|0 "
                        "SPLINE|71 3|74 2|11 1|21 2|"
                        "11 3|21 4|0 LEADER|10 0|20 0|10 1|20 0|0 LEADER|10 5|20 5"));
  EXPECT_TRUE(std::get<SplineEntity>(drawing.entities[1].shape).controlPoints.empty());
  EXPECT_EQ(std::get<PolylineEntity>(drawing.entities[2].shape).vertices.size(), 2);
  EXPECT_EQ(std::get<PolylineEntity>(drawing.entities[3].shape).vertices.size(), 1);
}

TEST(Entities, SolidsAreWrittenInAZAndFacesAround) {
  const char* corners = "|10 0|20 0|11 1|21 0|12 0|22 1|13 1|23 1";
  const Points around = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
  EXPECT_EQ(ReadFirst<SolidEntity>(std::string("0 SOLID") + corners).corners, around);
  EXPECT_EQ(ReadFirst<SolidEntity>(std::string("0 TRACE") + corners).corners, around);
  const Points triangle = {{0, 0}, {1, 0}, {0, 1}};
  EXPECT_EQ(ReadFirst<SolidEntity>("0 SOLID|10 0|20 0|11 1|21 0|12 0|22 1|13 0|23 1").corners, triangle);
  EXPECT_EQ(ReadFirst<SolidEntity>("0 SOLID|10 0|20 0|11 1|21 0|12 0|22 1").corners, triangle);

  const auto face = ReadFirst<FaceEntity>("0 3DFACE|10 0|20 0|11 1|21 0|12 1|22 1|13 0|23 1|70 6");
  EXPECT_EQ(face.corners, around);
  EXPECT_EQ(face.edgeVisible, (std::array{true, false, false, true}));
  const auto threeSided = ReadFirst<FaceEntity>("0 3DFACE|10 0|20 0|11 1|21 0|12 1|22 1|13 1|23 1|70 8");
  EXPECT_EQ(threeSided.corners.size(), 3);
  EXPECT_EQ(threeSided.edgeVisible[1], true);
  EXPECT_EQ(threeSided.edgeVisible[2], false);
}

TEST(Entities, LeadersAreLinesOrCurves) {
  EXPECT_EQ(PointsOf(ReadFirst<PolylineEntity>("0 LEADER|72 0|76 3|10 0|20 0|10 1|20 1|10 2|20 1")),
            (Points{{0, 0}, {1, 1}, {2, 1}}));
  EXPECT_EQ(ReadFirst<SplineEntity>("0 LEADER|72 1|76 3|10 0|20 0|10 1|20 1|10 2|20 1").fitPoints,
            (Points{{0, 0}, {1, 1}, {2, 1}}));
}

TEST(Entities, InsertsAndDimensionsReferToBlocks) {
  const Drawing drawing = Read(WithSections(
      "", "", "0 BLOCK|2 Door|10 1|20 2|0 POINT|10 0|20 0|0 ENDBLK|0 BLOCK|2 *D1|0 POINT|10 0|20 0|0 ENDBLK",
      "0 INSERT|2 DOOR|10 3|20 4|41 2|42 -2|50 90|70 3|71 4|44 5|45 6|0 INSERT|2 door|10 0|20 0|"
      "0 DIMENSION|2 *d1|10 7|20 7|12 1|22 2"));
  ASSERT_EQ(drawing.blocks.count("DOOR"), 1);
  EXPECT_EQ(drawing.blocks.at("DOOR").base, (Vec2{1, 2}));
  ASSERT_EQ(drawing.entities.size(), 3);
  const auto& insert = std::get<InsertEntity>(drawing.entities[0].shape);
  EXPECT_EQ(insert.block, "DOOR");
  EXPECT_EQ(insert.at, (Vec2{3, 4}));
  EXPECT_EQ(insert.scaleX, 2);
  EXPECT_EQ(insert.scaleY, -2);
  EXPECT_DOUBLE_EQ(insert.rotation, kPi / 2);
  EXPECT_EQ(insert.columns * 10 + insert.rows, 34);
  EXPECT_EQ(insert.columnSpacing, 5);
  EXPECT_EQ(insert.rowSpacing, 6);
  const auto& plain = std::get<InsertEntity>(drawing.entities[1].shape);
  EXPECT_EQ(plain.scaleX, 1);
  EXPECT_EQ(plain.columns * 10 + plain.rows, 11);
  const auto& dimension = std::get<InsertEntity>(drawing.entities[2].shape);
  EXPECT_EQ(dimension.block, "*D1");
  EXPECT_EQ(dimension.at, (Vec2{1, 2}));
}

TEST(Entities, WhatIsNotPlottedIsCountedAsOftenAsItAppears) {
  const Drawing drawing = Read(WithSections(
      "", "",
      "0 BLOCK|2 LEAF|0 TEXT|1 a|0 ENDBLK|0 BLOCK|2 TREE|0 INSERT|2 LEAF|10 0|20 0|70 3|71 2|0 MTEXT|1 b|0 "
      "ENDBLK|"
      "0 BLOCK|2 UNUSED|0 TEXT|1 c|0 ENDBLK|0 BLOCK|2 ELSEWHERE|70 4|0 ENDBLK",
      "0 POINT|10 0|20 0|0 INSERT|2 TREE|10 0|20 0|66 1|0 ATTRIB|1 d|0 SEQEND|0 INSERT|2 TREE|10 0|20 0|"
      "0 INSERT|2 MISSING|10 0|20 0|0 INSERT|2 ELSEWHERE|10 0|20 0|0 DIMENSION|70 0|0 DIMENSION|2 *D9|70 0|"
      "0 TEXT|60 1|1 hidden|0 TEXT|67 1|1 on paper|0 XLINE|10 0|20 0|11 1|21 0|"
      "0 INSERT|2 LEAF|10 0|20 0|210 1|220 0|230 0"));
  const std::map<std::string, uint64_t> skipped = {{"ATTRIB", 1}, {"DIMENSION", 2}, {"INSERT", 3},
                                                   {"MTEXT", 2},  {"TEXT", 12},     {"XLINE", 1}};
  EXPECT_EQ(drawing.skipped, skipped);
  EXPECT_EQ(drawing.entities.size(), 3);
  EXPECT_EQ(drawing.name, "drawing.dxf");
}

TEST(Entities, CommonAttributes) {
  const Drawing drawing = Read(WithEntities(
      "0 POINT|10 0|20 0|0 POINT|8 Walls|6 dashed|62 5|370 35|48 2.5|60 1|67 1|39 12|10 0|20 0|"
      "0 POINT|62 0|370 -2|10 0|20 0|0 POINT|62 3|420 1193046|10 0|20 0|0 POINT|62 256|39 7|10 0|20 0"));
  const Attributes& plain = drawing.entities[0].attributes;
  EXPECT_EQ(plain.layer, "0");
  EXPECT_EQ(plain.color.kind, EntityColor::Kind::kByLayer);
  EXPECT_EQ(plain.lineType, "BYLAYER");
  EXPECT_EQ(plain.lineWeight, kLineWeightByLayer);
  EXPECT_TRUE(plain.visible && !plain.paperSpace);
  const Attributes& full = drawing.entities[1].attributes;
  EXPECT_EQ(full.layer, "Walls");
  EXPECT_EQ(full.lineType, "DASHED");
  EXPECT_EQ(full.color, (EntityColor{EntityColor::Kind::kIndex, 5}));
  EXPECT_EQ(full.lineWeight, 35);
  EXPECT_EQ(full.lineTypeScale, 2.5);
  EXPECT_TRUE(!full.visible && full.paperSpace);
  EXPECT_EQ(drawing.entities[2].attributes.color.kind, EntityColor::Kind::kByBlock);
  EXPECT_EQ(drawing.entities[2].attributes.lineWeight, kLineWeightByBlock);
  EXPECT_EQ(drawing.entities[3].attributes.color, (EntityColor{EntityColor::Kind::kTrue, 0x123456}));
  EXPECT_EQ(drawing.entities[4].attributes.color.kind, EntityColor::Kind::kByLayer);
  EXPECT_EQ(drawing.entities[4].attributes.lineWeight, kLineWeightByLayer) << "a thickness is no line weight";
}

TEST(Entities, ForeignDataIsLeftAlone) {
  const auto line = ReadFirst<LineEntity>(
      "0 LINE|102 {NOTES|10 99|11 99|102 }|10 1|20 2|11 3|21 4|101 Embedded Object|10 77|20 77|1001 X|1010 "
      "5|1020 6");
  EXPECT_EQ(line.start, (Vec2{1, 2}));
  EXPECT_EQ(line.end, (Vec2{3, 4}));
}

}  // namespace
}  // namespace hdiplot
