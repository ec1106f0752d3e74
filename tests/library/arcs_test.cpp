// Arcs compared with the exact ellipse.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

#include "platform/host_library.h"

namespace hdi {
namespace {

constexpr double kTurn = 2.0 * std::numbers::pi;

std::vector<HT_BezierCurve> Convert(const HT_EllipArc& arc) {
  std::vector<HT_BezierCurve> curves;
  HT_ConvertEllipArcToBezierCurves(arc, curves);
  return curves;
}

bool SameBits(const HT_Double_Point& a, const HT_Double_Point& b) { return a.x == b.x && a.y == b.y; }

// Maps a point of the curve to the plane in which the ellipse is the unit circle.
HT_Double_Point UnitPoint(const HT_EllipArc& arc, const HT_BezierCurve& curve, double t) {
  const double u = 1.0 - t;
  const auto mix = [&](double a, double b, double c, double d) {
    return u * u * u * a + 3 * u * u * t * b + 3 * u * t * t * c + t * t * t * d;
  };
  const double x = mix(curve.start.x, curve.control1.x, curve.control2.x, curve.end.x) - arc.center.x;
  const double y = mix(curve.start.y, curve.control1.y, curve.control2.y, curve.end.y) - arc.center.y;
  return {(std::cos(arc.rotation) * x + std::sin(arc.rotation) * y) / arc.radiusX,
          (std::cos(arc.rotation) * y - std::sin(arc.rotation) * x) / arc.radiusY};
}

TEST(Arcs, StayWithinATwentiethOfADot) {
  const struct {
    HT_EllipArc arc;
    size_t count;     // the smallest number that suffices
    double span = 0;  // if not from start to end
  } kCases[] = {
      {{{12.5, -7.25}, 183, 20, 0.3, 0.7, 0.7 + kTurn}, 4},
      {{{0, 0}, 20, 184, -2, 1, 1 - kTurn}, 5, kTurn},
      {{{1e5, -1e5}, 1e5, 1e5, 4, -3, -3 + kTurn}, 12},
      {{{1, 2}, 1e5, 0.01, 0, 3, 4}, 2},
      {{{1, 2}, 40, 30, 1, 2, 3}, 1},
      {{{1, 2}, 100, 30, -1, 2, 0}, 3, kTurn - 2},  // an end below the start is increased by full turns
      {{{1, 2}, 30, 30, 0, 1, 2 - 3 * kTurn}, 1, 1},
      {{{1, 2}, 30, 30, 0, 0, kTurn / 4}, 1},
      {{{1, 2}, 30, 30, 0, 0, kTurn / 4 + 1e-8}, 2},
      {{{7, 8}, 30000, 20000, 6, 9, 11.5}, 4},
      // Full turns with inexact ends, or more than a turn.
      {{{1, 2}, 30, 20, 0.3, 0.7, 0.7 + kTurn - 1e-12}, 4},
      {{{1, 2}, 30, 20, 0.3, 0.7, 0.7 + 3 * kTurn}, 4, kTurn},
      {{{1, 2}, 30, 20, 0.3, 0.7, 0.7 - 2 * kTurn}, 4, kTurn},
      {{{1, 2}, 30, 20, 0.3, 0.7, 0.7 - kTurn + 1e-12}, 4, kTurn},
  };
  for (const auto& [arc, count, wholeSpan] : kCases) {
    SCOPED_TRACE(testing::Message() << arc.radiusX << ' ' << arc.startAngle << ' ' << arc.endAngle);
    const std::vector<HT_BezierCurve> curves = Convert(arc);
    ASSERT_EQ(curves.size(), count);
    const double span = wholeSpan == 0 ? arc.endAngle - arc.startAngle : wholeSpan;
    const bool closes = span > kTurn - 1e-11;
    EXPECT_EQ(SameBits(curves.front().start, curves.back().end), closes);
    const double piece = span / static_cast<double>(count);
    for (size_t i = 0; i < count; ++i) {
      EXPECT_TRUE(i == 0 || SameBits(curves[i - 1].end, curves[i].start));
      // A curve touches the ellipse at its ends and middle and is farthest from it in between.
      for (const double t : {0.0, 0.5, 1.0}) {
        const HT_Double_Point point = UnitPoint(arc, curves[i], t);
        const double angle = arc.startAngle + piece * (static_cast<double>(i) + t);
        EXPECT_NEAR(point.x, std::cos(angle), 1e-8) << i << ' ' << t;
        EXPECT_NEAR(point.y, std::sin(angle), 1e-8) << i << ' ' << t;
      }
      const HT_Double_Point furthest = UnitPoint(arc, curves[i], 0.2113);
      EXPECT_LT(std::fabs(std::hypot(furthest.x, furthest.y) - 1) * std::max(arc.radiusX, arc.radiusY), 0.05);
    }
  }
}

TEST(Arcs, AppendsNothingForDegenerateArcs) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  std::vector<HT_BezierCurve> curves = Convert({{0, 0}, 1, 1, 0, 0, 1});
  for (const HT_EllipArc& arc :
       {HT_EllipArc({0, 0}, 1, 1, 0, 2, 2), HT_EllipArc({0, 0}, kInfinity, 1, 0, 0, 1),
        HT_EllipArc({0, 0}, 1, 1, 0, -1e308, 1.7e308), HT_EllipArc({std::nan(""), 0}, 1, 1, 0, 0, 1)}) {
    HT_ConvertEllipArcToBezierCurves(arc, curves);
  }
  EXPECT_EQ(curves.size(), 1U);
  // Huge and zero radii terminate, too.
  EXPECT_EQ(Convert({{0, 0}, 1e300, 1, 0, 0, kTurn}).size(), 1024U);
  EXPECT_TRUE(SameBits(Convert({{5, 6}, 0, 0, 0, 0, 1}).back().end, {5, 6}));
}

}  // namespace
}  // namespace hdi
