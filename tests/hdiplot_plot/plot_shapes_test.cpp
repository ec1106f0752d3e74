// The shapes, one by one: which calls they become.
#include <gtest/gtest.h>

#include "tests/hdiplot_plot/logging_driver.h"

namespace hdiplot {
namespace {

using hdi::HT_Double_Point;

std::string NamesOf(const std::vector<LoggedCall>& calls) {
  std::string names;
  for (const LoggedCall& call : calls) names += (names.empty() ? "" : " ") + call.name;
  return names;
}

std::vector<LoggedCall> PlotShape(Shape shape) {
  Drawing drawing = SheetDrawing();
  drawing.entities.push_back(Thing(std::move(shape)));
  return PlotOnSheet(drawing);
}

bool Same(HT_Double_Point a, HT_Double_Point b) { return a.x == b.x && a.y == b.y; }

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
}

TEST(PlotShapes, PatternLinesAreSolidLinesAndDots) {
  HatchEntity hatch;
  hatch.loops.resize(1);
  hatch.loops[0].polyline.vertices = {{{5, 5}, 0, 0, 0}, {{95, 5}, 0, 0, 0}, {{50, 95}, 0, 0, 0}};
  hatch.lines = {{0, {0, 10}, {0, 1000}, {}}, {0, {50, 20}, {0, 1000}, {0, -100}}};
  const auto lines = PlotShape(hatch);
  ASSERT_EQ(NamesOf(lines), "Polyline Polyline");
  EXPECT_DOUBLE_EQ(lines[0].points[0][0].y, 2990);
  EXPECT_EQ(lines[1].points[0].size(), 1U);
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

}  // namespace
}  // namespace hdiplot
