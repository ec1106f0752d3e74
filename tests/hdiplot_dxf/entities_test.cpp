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

TEST(Entities, ArcsRunCounterClockwiseFromStartToAHigherEnd) {
  const auto arc = ReadFirst<ArcEntity>("0 ARC|10 1|20 2|40 3|50 270|51 90");
  EXPECT_DOUBLE_EQ(arc.startAngle, 1.5 * kPi);
  EXPECT_DOUBLE_EQ(arc.endAngle, 2.5 * kPi);

  const auto whole = ReadFirst<ArcEntity>("0 ARC|10 0|20 0|40 1|50 90|51 90");
  EXPECT_DOUBLE_EQ(whole.endAngle - whole.startAngle, 2 * kPi);

  // Far from any real angle: in reach, and not one turn after the other.
  const auto wild = ReadFirst<ArcEntity>("0 ARC|10 0|20 0|40 1|50 -1e20|51 1e25");
  EXPECT_LT(std::fabs(wild.startAngle), 4 * kPi);
  EXPECT_GT(wild.endAngle, wild.startAngle);
  EXPECT_LE(wild.endAngle - wild.startAngle, 2 * kPi);
}

TEST(Entities, EllipsesHaveBothAxesAndARisingParameter) {
  const auto ellipse = ReadFirst<EllipseEntity>("0 ELLIPSE|10 1|20 2|11 0|21 4|40 0.25|41 5|42 1");
  EXPECT_EQ(ellipse.minorAxis, (Vec2{-1, 0}));
  EXPECT_DOUBLE_EQ(ellipse.startParameter, 5);
  EXPECT_DOUBLE_EQ(ellipse.endParameter, 1 + 2 * kPi);

  const auto whole = ReadFirst<EllipseEntity>("0 ELLIPSE|10 1|20 2|11 0|21 4|40 0.25|41 0|42 6.283186");
  EXPECT_DOUBLE_EQ(whole.endParameter, 2 * kPi);
}

TEST(Entities, OldPolylinesLeaveTheirFrameOut) {
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

TEST(Entities, PolyfacesDrawSharedEdgesOnceAndHiddenOnesNot) {
  const auto mesh = ReadFirst<MeshEntity>(
      "0 POLYLINE|66 1|70 64|71 4|72 2|"
      "0 VERTEX|10 0|20 0|70 192|0 VERTEX|10 1|20 0|70 192|0 VERTEX|10 1|20 1|70 192|0 VERTEX|10 0|20 1|70 "
      "192|"
      "0 VERTEX|10 0|20 0|70 128|71 1|72 2|73 3|0 VERTEX|10 0|20 0|70 128|71 1|72 3|73 -4|0 SEQEND");
  const std::vector<Points> edges = {{{0, 0}, {1, 0}}, {{1, 0}, {1, 1}}, {{1, 1}, {0, 0}}, {{1, 1}, {0, 1}}};
  EXPECT_EQ(mesh.edges, edges);
}

TEST(Entities, SplinesMayLackKnotsOrControlPoints) {
  const auto withoutKnots = ReadFirst<SplineEntity>(
      "0 SPLINE|70 8|71 2|10 0|20 0|10 1|20 1|10 2|20 0|10 3|20 3|11 0|21 0|11 3|21 3");
  EXPECT_EQ(withoutKnots.knots, (std::vector<double>{0, 0, 0, 1, 2, 2, 2}));

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
  const Points around = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
  EXPECT_EQ(ReadFirst<SolidEntity>("0 SOLID|10 0|20 0|11 1|21 0|12 0|22 1|13 1|23 1").corners, around);
  EXPECT_EQ(ReadFirst<SolidEntity>("0 SOLID|10 0|20 0|11 1|21 0|12 0|22 1").corners.size(), 3);

  const auto face = ReadFirst<FaceEntity>("0 3DFACE|10 0|20 0|11 1|21 0|12 1|22 1|13 0|23 1|70 6");
  EXPECT_EQ(face.corners, around);
  EXPECT_EQ(face.edgeVisible, (std::array{true, false, false, true}));
}

TEST(Entities, InsertsAndDimensionsReferToBlocks) {
  const Drawing drawing = Read(WithSections(
      "", "", "0 BLOCK|2 Door|10 1|20 2|0 POINT|10 0|20 0|0 ENDBLK|0 BLOCK|2 *D1|0 POINT|10 0|20 0|0 ENDBLK",
      "0 INSERT|2 DOOR|10 3|20 4|0 DIMENSION|2 *d1|10 7|20 7|12 1|22 2"));
  ASSERT_EQ(drawing.blocks.count("DOOR"), 1);
  EXPECT_EQ(drawing.blocks.at("DOOR").base, (Vec2{1, 2}));
  ASSERT_EQ(drawing.entities.size(), 2);
  const auto& insert = std::get<InsertEntity>(drawing.entities[0].shape);
  EXPECT_EQ(insert.block, "DOOR");
  EXPECT_EQ(insert.at, (Vec2{3, 4}));
  const auto& dimension = std::get<InsertEntity>(drawing.entities[1].shape);
  EXPECT_EQ(dimension.block, "*D1");
  EXPECT_EQ(dimension.at, (Vec2{1, 2}));
}

TEST(Entities, WhatIsNotPlottedIsCountedAsOftenAsItAppears) {
  const Drawing drawing = Read(WithSections(
      "", "",
      "0 BLOCK|2 LEAF|0 XLINE|0 ENDBLK|0 BLOCK|2 TREE|0 INSERT|2 LEAF|10 0|20 0|70 3|71 2|0 RAY|0 "
      "ENDBLK|"
      "0 BLOCK|2 UNUSED|0 XLINE|0 ENDBLK|0 BLOCK|2 ELSEWHERE|70 4|0 ENDBLK",
      "0 POINT|10 0|20 0|0 INSERT|2 TREE|10 0|20 0|66 1|0 SEQEND|0 INSERT|2 TREE|10 0|20 0|"
      "0 INSERT|2 MISSING|10 0|20 0|0 INSERT|2 ELSEWHERE|10 0|20 0|0 DIMENSION|70 0|0 DIMENSION|2 *D9|70 0|"
      "0 XLINE|60 1|0 XLINE|67 1|0 REGION|1 data|"
      "0 INSERT|2 LEAF|10 0|20 0|210 1|220 0|230 0"));
  const std::map<std::string, uint64_t> skipped = {
      {"DIMENSION", 2}, {"INSERT", 3}, {"RAY", 2}, {"REGION", 1}, {"XLINE", 12}};
  EXPECT_EQ(drawing.skipped, skipped);
}

TEST(Entities, CommonAttributes) {
  const Drawing drawing = Read(WithEntities(
      "0 POINT|8 Walls|6 dashed|62 5|370 35|48 2.5|60 1|67 1|39 12|10 0|20 0|"
      "0 POINT|62 0|370 -2|10 0|20 0|0 POINT|62 3|420 1193046|10 0|20 0|0 POINT|62 256|39 7|10 0|20 0"));
  const Attributes& full = drawing.entities[0].attributes;
  EXPECT_EQ(full.lineType, "DASHED");
  EXPECT_EQ(full.color, (EntityColor{EntityColor::Kind::kIndex, 5}));
  EXPECT_EQ(full.lineWeight, 35);
  EXPECT_TRUE(!full.visible && full.paperSpace);
  EXPECT_EQ(drawing.entities[1].attributes.color.kind, EntityColor::Kind::kByBlock);
  EXPECT_EQ(drawing.entities[1].attributes.lineWeight, kLineWeightByBlock);
  EXPECT_EQ(drawing.entities[2].attributes.color, (EntityColor{EntityColor::Kind::kTrue, 0x123456}));
  EXPECT_EQ(drawing.entities[3].attributes.color.kind, EntityColor::Kind::kByLayer);
  EXPECT_EQ(drawing.entities[3].attributes.lineWeight, kLineWeightByLayer) << "a thickness is no line weight";
}

TEST(Entities, ForeignDataIsLeftAlone) {
  const auto line = ReadFirst<LineEntity>(
      "0 LINE|102 {NOTES|10 99|11 99|102 }|10 1|20 2|11 3|21 4|101 Embedded Object|10 77|20 77|1001 X|1010 "
      "5|1020 6");
  EXPECT_EQ(line.start, (Vec2{1, 2}));
  EXPECT_EQ(line.end, (Vec2{3, 4}));
}

TEST(Entities, HaveTransparencyAndLinks) {
  const Drawing drawing = Read(WithSections(
      "",
      "0 TABLE|2 LAYER|70 2|0 LAYER|2 Glass|70 0|62 4|1001 OTHER|1071 33554433|1001 ACCMTRANSPARENCY|"
      "1071 33554560|0 LAYER|2 Wall|70 0|62 4|1001 OTHER|1071 33554433|0 ENDTAB",
      "0 BLOCK|2 B|10 0|20 0|0 ENDBLK",
      "0 POINT|10 0|20 0|440 33554687|1001 OTHER|1000 no|1001 PE_URL|1000 www.example.com/\\U+00E4|1002 {|"
      "1000 words|1002 }|0 POINT|10 0|20 0|440 16777216|1001 PE_URL|1071 1|1001 OTHER|1000 no|"
      "0 INSERT|66 1|2 B|10 0|20 0|440 33554442|1001 PE_URL|1000 C:\\plans\\a.dxf|0 ATTRIB|10 0|20 0|40 1|1 "
      "a|"
      "440 16777216|0 SEQEND|0 POINT|10 0|20 0|440 0"));
  EXPECT_EQ(drawing.layers.at("Glass").alpha, 128);
  EXPECT_EQ(drawing.layers.at("Wall").alpha, 255);
  ASSERT_EQ(drawing.entities.size(), 5U);
  const auto at = [&](size_t i) -> const Attributes& { return drawing.entities[i].attributes; };
  EXPECT_EQ(at(0).alpha, (EntityAlpha{EntityAlpha::Kind::kOwn, 255}));
  EXPECT_EQ(at(0).link, "www.example.com/\u00e4");
  EXPECT_EQ(at(1).alpha.kind, EntityAlpha::Kind::kByBlock);
  EXPECT_EQ(at(1).link, "");
  // An attribute has both of its insert.
  for (const size_t i : {2, 3}) {
    EXPECT_EQ(at(i).alpha, (EntityAlpha{EntityAlpha::Kind::kOwn, 10}));
    EXPECT_EQ(at(i).link, "C:\\plans\\a.dxf");
  }
  EXPECT_EQ(at(4).alpha.kind, EntityAlpha::Kind::kByLayer);
  EXPECT_EQ(drawing.types.at("POINT").model, 3U);
  EXPECT_EQ(drawing.types.at("ATTRIB").model, 1U);
}

}  // namespace
}  // namespace hdiplot
