// The shapes, one by one: which calls they become.
#include <gtest/gtest.h>

#include "tests/hdiplot_plot/logging_driver.h"

namespace hdiplot {
namespace {

using hdi::HT_Double_Point;

constexpr double kPi = 3.14159265358979;

std::vector<LoggedCall> PlotShape(Shape shape) {
  Drawing drawing = SheetDrawing();
  drawing.entities.push_back(Thing(std::move(shape)));
  return PlotOnSheet(drawing);
}

std::string NamesOf(const std::vector<LoggedCall>& calls) {
  std::string names;
  for (const LoggedCall& call : calls) names += (names.empty() ? "" : " ") + call.name;
  return names;
}

bool Same(HT_Double_Point a, HT_Double_Point b) { return a.x == b.x && a.y == b.y; }

TEST(PlotShapes, ACircleIsOneArc) {
  const auto calls = PlotShape(ArcEntity{{100, 200}, 50, 0, 2 * kPi});
  ASSERT_EQ(NamesOf(calls), "Arc");
  EXPECT_DOUBLE_EQ(calls[0].points[0][0].y, 2800);
  EXPECT_NEAR(calls[0].numbers[0], 50, 1e-9);
  EXPECT_NEAR(calls[0].numbers[1], 50, 1e-9);
  EXPECT_NEAR(calls[0].numbers[4] - calls[0].numbers[3], 2 * kPi, 1e-9);
}

TEST(PlotShapes, AnArcInAStretchedAndMirroredBlockIsAnEllipse) {
  Drawing drawing = SheetDrawing();
  drawing.blocks["B"].entities = {Thing(ArcEntity{{0, 0}, 10, 0, kPi / 2})};
  InsertEntity insert;
  insert.block = "B";
  insert.at = {500, 500};
  insert.scaleX = -5;
  insert.scaleY = 2;
  drawing.entities.push_back(Thing(insert));
  const auto calls = PlotOnSheet(drawing);
  ASSERT_EQ(NamesOf(calls), "Arc");
  const auto& n = calls[0].numbers;
  EXPECT_NEAR(n[0], 50, 1e-9);
  EXPECT_NEAR(n[1], 20, 1e-9);
  // The quarter from above to the left, as seen on paper.
  const auto at = [&](double t) {
    const double x = n[0] * std::cos(t);
    const double y = n[1] * std::sin(t);
    return Vec2{x * std::cos(n[2]) - y * std::sin(n[2]), x * std::sin(n[2]) + y * std::cos(n[2])};
  };
  EXPECT_NEAR(at(n[3]).x, 0, 1e-9);
  EXPECT_NEAR(at(n[3]).y, 20, 1e-9);
  EXPECT_NEAR(at(n[4]).x, -50, 1e-9);
  EXPECT_NEAR(at(n[4]).y, 0, 1e-9);
}

TEST(PlotShapes, APolylineWithBulgesIsOnePath) {
  // A slot whose corners lie between dots.
  const PolylineEntity slot{{{{100.3, 100.4}, 0, 0, 0},
                             {{300.3, 100.4}, 1, 0, 0},
                             {{300.3, 180.7}, 0, 0, 0},
                             {{100.3, 180.7}, 1, 0, 0}},
                            true};
  const auto calls = PlotShape(slot);
  ASSERT_EQ(NamesOf(calls), "Polyline PolyBezier Polyline PolyBezier");
  for (size_t i = 0; i < calls.size(); ++i) {
    const auto& points = calls[i].points[0];
    const auto& next = calls[(i + 1) % calls.size()].points[0];
    EXPECT_TRUE(Same(points.back(), next.front())) << i;
    // The driver rounds the record's y, 3000 less the host's.
    EXPECT_EQ(points.back().x, std::round(points.back().x));
    EXPECT_EQ(points.back().y, std::round(points.back().y));
  }
  // Middles of the arcs are where they belong, within half a dot of rounding.
  const auto& curve = calls[1].points[0];
  double furthest = 0;
  for (const HT_Double_Point& p : curve) furthest = std::max(furthest, p.x);
  EXPECT_NEAR(furthest, 300.3 + 40.15, 1);
}

TEST(PlotShapes, APlainPolylineIsOneCall) {
  const auto calls =
      PlotShape(PolylineEntity{{{{1, 1}, 0, 0, 0}, {{5, 1}, 0, 0, 0}, {{5, 9}, 0, 0, 0}}, true});
  ASSERT_EQ(NamesOf(calls), "Polyline");
  ASSERT_EQ(calls[0].points[0].size(), 4U);
  EXPECT_TRUE(Same(calls[0].points[0].front(), calls[0].points[0].back()));
}

TEST(PlotShapes, AWidePolylineIsAPenAsWide) {
  const std::vector<PolyVertex> vertices{{{10, 10}, 0, 20, 20}, {{90, 10}, 0, 20, 20}, {{90, 80}, 0, 20, 20}};
  const auto open = PlotShape(PolylineEntity{vertices, false});
  ASSERT_EQ(NamesOf(open), "SetPen BeginPath Polyline BeginPath");
  EXPECT_EQ(open[0].pen.width, 20U);
  EXPECT_EQ(open[0].pen.style, hdi::kPenGeometric | hdi::kPenCapFlat | hdi::kPenJoinMiter);
  // The first segment once more: nothing else joins the last corner.
  const auto closed = PlotShape(PolylineEntity{vertices, true});
  const auto& points = closed[2].points[0];
  ASSERT_EQ(points.size(), 5U);
  EXPECT_TRUE(Same(points[0], points[3]));
  EXPECT_TRUE(Same(points[1], points[4]));
}

TEST(PlotShapes, ATaperedPolylineIsFilled) {
  const auto calls =
      PlotShape(PolylineEntity{{{{10, 10}, 0, 20, 0}, {{90, 10}, 0, 0, 0}, {{90, 80}, 0, 0, 0}}, false});
  ASSERT_EQ(NamesOf(calls), "SetBrush SetFillMode PolyPolygon Polyline");
  ASSERT_EQ(calls[2].points.size(), 1U);
  EXPECT_EQ(calls[2].points[0].size(), 5U);
}

TEST(PlotShapes, AreasAreClosedAndOutlinedInTheirOwnColor) {
  Drawing drawing = SheetDrawing();
  HatchEntity hatch;
  hatch.solid = true;
  hatch.loops.resize(2);
  hatch.loops[0].polyline.vertices = {{{0, 0}, 0, 0, 0}, {{90, 0}, 0, 0, 0}, {{90, 90}, 0, 0, 0}};
  hatch.loops[1].polyline.vertices = {{{60, 20}, 1, 0, 0}, {{80, 20}, 1, 0, 0}};
  Entity entity = Thing(hatch);
  entity.attributes.color = {EntityColor::Kind::kIndex, 5};
  drawing.entities.push_back(entity);
  entity.shape = SolidEntity{{{0, 0}, {9, 0}, {9, 9}, {0, 9}}};
  drawing.entities.push_back(entity);
  const auto calls = PlotOnSheet(drawing);
  ASSERT_EQ(NamesOf(calls), "SetPen SetBrush SetFillMode PolyPolygon PolyPolygon");
  EXPECT_EQ(calls[0].pen.color, (Rgb{0, 0, 255}));
  EXPECT_TRUE(calls[0].pen.entries.empty());
  EXPECT_EQ(calls[1].brush, (Rgb{0, 0, 255}));
  EXPECT_EQ(calls[2].numbers[0], 1);
  ASSERT_EQ(calls[3].points.size(), 2U);
  EXPECT_GT(calls[3].points[1].size(), 8U);
  for (const auto& ring : calls[3].points) EXPECT_TRUE(Same(ring.front(), ring.back()));
  EXPECT_EQ(calls[4].points[0].size(), 5U);
}

TEST(PlotShapes, PatternLinesAreSolid) {
  Drawing drawing = SheetDrawing();
  drawing.lineTypes["DASHED"] = {{60, -30}};
  HatchEntity hatch;
  hatch.loops.resize(1);
  hatch.loops[0].polyline.vertices = {
      {{5, 5}, 0, 0, 0}, {{95, 5}, 0, 0, 0}, {{95, 95}, 0, 0, 0}, {{5, 95}, 0, 0, 0}};
  hatch.lines = {{0, {0, 10}, {0, 20}, {}}, {0, {0, 20}, {0, 1000}, {0, -30}}};
  Entity entity = Thing(hatch);
  entity.attributes.lineType = "DASHED";
  drawing.entities.push_back(entity);
  const auto lines = PlotOnSheet(drawing);
  ASSERT_EQ(NamesOf(lines), "Polyline Polyline Polyline Polyline Polyline Polyline Polyline Polyline");
  EXPECT_DOUBLE_EQ(lines[0].points[0][0].y, 2990);
  EXPECT_DOUBLE_EQ(lines[4].points[0][1].x, 95);
  EXPECT_EQ(lines[5].points[0].size(), 1U);  // the dots
}

TEST(PlotShapes, FacesDrawTheirVisibleEdges) {
  FaceEntity face;
  face.corners = {{0, 0}, {9, 0}, {9, 9}, {0, 9}};
  face.edgeVisible = {true, false, true, false};
  EXPECT_EQ(NamesOf(PlotShape(face)), "Polyline Polyline");
  face.corners.pop_back();
  face.edgeVisible = {true, true, true, true};
  EXPECT_EQ(PlotShape(face).size(), 3U);
}

TEST(PlotShapes, PointsHaveFigures) {
  Drawing drawing = SheetDrawing();
  drawing.entities.push_back(Thing(PointEntity{{100, 100}}));
  const auto figure = [&](int mode, double size) {
    drawing.pointMode = mode;
    drawing.pointSize = size;
    auto calls = PlotToLog(drawing, OneToOne());
    const size_t each = (calls.size() - 1) / 3;  // all but the pen, for three points
    return std::vector<LoggedCall>(calls.end() - static_cast<std::ptrdiff_t>(each), calls.end());
  };
  EXPECT_EQ(figure(0, 0)[0].points[0].size(), 1U);
  EXPECT_TRUE(figure(1, 0).empty());
  const auto plus = figure(2, 10);
  ASSERT_EQ(NamesOf(plus), "Polyline Polyline");
  EXPECT_DOUBLE_EQ(plus[0].points[0][0].x, 90);
  EXPECT_DOUBLE_EQ(plus[0].points[0][1].x, 110);
  const auto all = figure(99, -1);  // a cross in a circle in a square, 1 percent of the sheet
  ASSERT_EQ(NamesOf(all), "Polyline Polyline Arc Polyline");
  EXPECT_DOUBLE_EQ(all[2].numbers[0], 15);
  EXPECT_EQ(all[3].points[0].size(), 5U);
}

TEST(PlotShapes, SplinesAreOnePath) {
  SplineEntity spline;
  spline.knots = {0, 0, 0, 0, 1, 2, 2, 2, 2};
  spline.controlPoints = {{0, 0}, {10, 50}, {50, 50}, {70, 10}, {90, 0}};
  const auto calls = PlotShape(spline);
  ASSERT_EQ(NamesOf(calls), "PolyBezier");
  EXPECT_EQ(calls[0].points[0].size(), 7U);
  EXPECT_NEAR(calls[0].points[0][6].x, 90, 1e-9);
  EXPECT_NEAR(calls[0].points[0][6].y, 3000, 1e-9);
}

}  // namespace
}  // namespace hdiplot
