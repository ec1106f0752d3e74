// Arcs held against the exact ellipse.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>
#include <vector>

#include "platform/host_library.h"

namespace hdi {
namespace {

constexpr double kTurn = 2.0 * std::numbers::pi;
constexpr double kTolerance = 0.05;
constexpr int kSamples = 40;

std::vector<HT_BezierCurve> Convert(const HT_EllipArc& arc) {
  std::vector<HT_BezierCurve> curves;
  HT_ConvertEllipArcToBezierCurves(arc, curves);
  return curves;
}

bool SameBits(const HT_Double_Point& a, const HT_Double_Point& b) { return a.x == b.x && a.y == b.y; }

double Distance(const HT_Double_Point& a, const HT_Double_Point& b) {
  return std::hypot(a.x - b.x, a.y - b.y);
}

HT_Double_Point At(const HT_BezierCurve& curve, double t) {
  const double u = 1.0 - t;
  const double b[] = {u * u * u, 3 * u * u * t, 3 * u * t * t, t * t * t};
  return {b[0] * curve.start.x + b[1] * curve.control1.x + b[2] * curve.control2.x + b[3] * curve.end.x,
          b[0] * curve.start.y + b[1] * curve.control1.y + b[2] * curve.control2.y + b[3] * curve.end.y};
}

// The parameter of the ellipse's point that lies in the direction of `point`.
double AngleOf(const HT_EllipArc& arc, const HT_Double_Point& point) {
  const double x = point.x - arc.center.x;
  const double y = point.y - arc.center.y;
  const double along = std::cos(arc.rotation) * x + std::sin(arc.rotation) * y;
  const double across = -std::sin(arc.rotation) * x + std::cos(arc.rotation) * y;
  return std::atan2(across / arc.radiusY, along / arc.radiusX);
}

// Walks the curves and checks that they stay on the ellipse and go once from the arc's start to its end, in
// its direction.
void CheckArc(const HT_EllipArc& arc) {
  SCOPED_TRACE(testing::Message() << arc.radiusX << ' ' << arc.radiusY << ' ' << arc.rotation << ' '
                                  << arc.startAngle << ' ' << arc.endAngle);
  const std::vector<HT_BezierCurve> curves = Convert(arc);
  ASSERT_FALSE(curves.empty());
  const double span = std::clamp(arc.endAngle - arc.startAngle, -kTurn, kTurn);
  const double direction = std::copysign(1.0, span);
  double worst = 0.0;
  double walked = 0.0;
  double last = AngleOf(arc, arc.PointAt(arc.startAngle));
  for (size_t i = 0; i < curves.size(); ++i) {
    EXPECT_TRUE(i == 0 || SameBits(curves[i - 1].end, curves[i].start));
    for (int sample = 1; sample <= kSamples; ++sample) {
      const HT_Double_Point point = At(curves[i], static_cast<double>(sample) / kSamples);
      const double angle = AngleOf(arc, point);
      // The ellipse's nearest point is at least as near as the one in the same direction.
      worst = std::max(worst, Distance(point, arc.PointAt(angle)));
      const double step = std::remainder(angle - last, kTurn);
      EXPECT_GT(step * direction, -1e-9);
      walked += step;
      last = angle;
    }
  }
  EXPECT_LT(worst, kTolerance);
  EXPECT_NEAR(walked, span, 1e-6);
  const double slack = 1e-9 * std::max({1.0, arc.radiusX, arc.radiusY});
  EXPECT_LT(Distance(curves.front().start, arc.PointAt(arc.startAngle)), slack);
  EXPECT_LT(Distance(curves.back().end, arc.PointAt(arc.startAngle + span)), slack);
  EXPECT_GE(static_cast<double>(curves.size()), std::fabs(span) / (kTurn / 4) - 1e-9);
  EXPECT_LE(curves.size(), 16U);  // a circle of the largest radius takes 12
}

TEST(Arcs, RandomArcsStayWithinATwentiethOfADot) {
  std::mt19937_64 random(20240607);
  const auto uniform = [&](double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
  };
  for (int i = 0; i < 3000; ++i) {
    const double radiusX = std::pow(10.0, uniform(-2.0, 5.0));
    const double radiusY = i % 3 == 0 ? radiusX : std::pow(10.0, uniform(-2.0, 5.0));
    const double start = uniform(-10.0, 10.0);
    const double span = i % 5 == 0 ? std::copysign(kTurn, uniform(-1.0, 1.0)) : uniform(-kTurn, kTurn);
    CheckArc(HT_EllipArc({uniform(-1e5, 1e5), uniform(-1e5, 1e5)}, radiusX, radiusY, uniform(-7.0, 7.0),
                         start, start + span));
  }
}

TEST(Arcs, WholeTurnsClose) {
  const double start = 0.7;
  for (const double span : {kTurn, -kTurn, 3 * kTurn, -100.0, kTurn - 1e-12}) {
    const std::vector<HT_BezierCurve> curves =
        Convert(HT_EllipArc({12.5, -7.25}, 30.0, 20.0, 0.3, start, start + span));
    ASSERT_EQ(curves.size(), 4U) << span;
    EXPECT_TRUE(SameBits(curves.front().start, curves.back().end)) << span;
  }
  CheckArc(HT_EllipArc({0.0, 0.0}, 30.0, 20.0, 0.3, 1.0, 1.0 - 2 * kTurn));
}

TEST(Arcs, AppendsNothingWithoutAnArc) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  std::vector<HT_BezierCurve> curves = Convert(HT_EllipArc({0.0, 0.0}, 1.0, 1.0, 0.0, 0.0, 1.0));
  ASSERT_EQ(curves.size(), 1U);
  HT_ConvertEllipArcToBezierCurves(HT_EllipArc({0.0, 0.0}, 1.0, 1.0, 0.0, 2.0, 2.0), curves);
  HT_ConvertEllipArcToBezierCurves(HT_EllipArc({0.0, 0.0}, kInfinity, 1.0, 0.0, 0.0, 1.0), curves);
  HT_ConvertEllipArcToBezierCurves(HT_EllipArc({0.0, 0.0}, 1.0, 1.0, 0.0, -1e308, 1.7e308), curves);
  HT_ConvertEllipArcToBezierCurves(HT_EllipArc({std::nan(""), 0.0}, 1.0, 1.0, 0.0, 0.0, 1.0), curves);
  EXPECT_EQ(curves.size(), 1U);
  // Huge and empty radii end, too.
  HT_ConvertEllipArcToBezierCurves(HT_EllipArc({0.0, 0.0}, 1e300, 1.0, 0.0, 0.0, kTurn), curves);
  HT_ConvertEllipArcToBezierCurves(HT_EllipArc({5.0, 6.0}, 0.0, 0.0, 0.0, 0.0, 1.0), curves);
  EXPECT_LT(curves.size(), 2000U);
  EXPECT_TRUE(SameBits(curves.back().end, {5.0, 6.0}));
}

TEST(IsEqual, IsStrict) {
  EXPECT_TRUE(isEqual(1.0, 1.0 + 9e-6, 1e-5));
  EXPECT_FALSE(isEqual(1.0, 1.5, 0.5));
  EXPECT_FALSE(isEqual(1.0, 1.0, 0.0));
  EXPECT_FALSE(isEqual(std::nan(""), std::nan(""), 1.0));
}

}  // namespace
}  // namespace hdi
