// Splines against their definition by basis functions.
#include "hdiplot/geometry/splines.h"

#include <gtest/gtest.h>

#include <random>

namespace hdiplot {
namespace {

// The Cox-de Boor recursion; the last span includes its end.
double Basis(const std::vector<double>& knots, size_t i, int degree, double t) {
  if (degree == 0) {
    const bool last = t == knots.back() && knots[i] < knots[i + 1] && knots[i + 1] == knots.back();
    return (knots[i] <= t && t < knots[i + 1]) || last ? 1 : 0;
  }
  const auto p = static_cast<size_t>(degree);
  const double left = knots[i + p] - knots[i];
  const double right = knots[i + p + 1] - knots[i + 1];
  return (left > 0 ? (t - knots[i]) / left * Basis(knots, i, degree - 1, t) : 0) +
         (right > 0 ? (knots[i + p + 1] - t) / right * Basis(knots, i + 1, degree - 1, t) : 0);
}

Vec2 PointOf(const Spline& spline, double t) {
  Vec2 sum;
  double weights = 0;
  for (size_t i = 0; i < spline.controlPoints.size(); ++i) {
    const double weight = spline.weights.empty() ? 1 : spline.weights[i];
    const double basis = Basis(spline.knots, i, spline.degree, t) * weight;
    sum = sum + spline.controlPoints[i] * basis;
    weights += basis;
  }
  return sum * (1 / weights);
}

double DistanceToChord(Vec2 p, Vec2 from, Vec2 to) {
  const Vec2 run = to - from;
  const double part = std::clamp(Dot(p - from, run) / std::max(Dot(run, run), 1e-300), 0.0, 1.0);
  return Length(p - Between(from, to, part));
}

// The greatest distance from points of the curve to the cubics, as fine polylines.
double Departure(const Spline& spline, const std::vector<Cubic>& cubics) {
  std::vector<Vec2> drawn;
  for (const Cubic& cubic : cubics) {
    for (int i = 0; i <= 400; ++i) drawn.push_back(cubic.At(i / 400.0));
  }
  const auto degree = static_cast<size_t>(spline.degree);
  const double from = spline.knots[degree];
  const double to = spline.knots[spline.controlPoints.size()];
  double worst = 0;
  for (int i = 0; i <= 100; ++i) {
    const Vec2 wanted = PointOf(spline, from + (to - from) * (i / 100.0));
    double nearest = 1e9;
    for (size_t k = 1; k < drawn.size(); ++k) {
      nearest = std::min(nearest, DistanceToChord(wanted, drawn[k - 1], drawn[k]));
    }
    worst = std::max(worst, nearest);
  }
  return worst;
}

Spline Random(int degree, size_t points, bool clamped, bool rational) {
  std::mt19937 random(static_cast<uint32_t>(degree) * 100 + static_cast<uint32_t>(points));
  std::uniform_real_distribution<double> any(0, 10);
  Spline spline;
  spline.degree = degree;
  for (size_t i = 0; i < points; ++i) {
    spline.controlPoints.push_back({any(random), any(random)});
    if (rational) spline.weights.push_back(0.2 + any(random) / 3);
  }
  const auto ends = static_cast<size_t>(degree);
  double knot = 0;
  for (size_t i = 0; i < points + ends + 1; ++i) {
    spline.knots.push_back(knot);
    const bool repeated = clamped && (i < ends || i >= points);
    if (!repeated) knot += 0.5 + any(random) / 10;
  }
  return spline;
}

TEST(Splines, KeepTheToleranceOfTheirDefinition) {
  for (const int degree : {1, 2, 3, 5, 9, -2, -3}) {
    // Rational for low degrees, unclamped for negative ones.
    const Spline spline = Random(std::abs(degree), 14, degree > 0, degree == 2 || degree == 3);
    std::vector<Cubic> cubics;
    AppendCubics(spline, 1e-3, cubics);
    EXPECT_LT(Departure(spline, cubics), 2e-3) << degree;
    EXPECT_LT(cubics.size(), 400U) << degree;
    for (size_t i = 1; i < cubics.size(); ++i) {
      EXPECT_LT(Length(cubics[i].points[0] - cubics[i - 1].points[3]), 1e-9);
    }
  }
}

}  // namespace
}  // namespace hdiplot
