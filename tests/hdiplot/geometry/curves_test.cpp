// Arcs and their images: bulges, axes under any map, cubic pieces, boxes.
#include "hdiplot/geometry/curves.h"

#include <gtest/gtest.h>

#include <random>

namespace hdiplot {
namespace {

constexpr double kPi = std::numbers::pi;

TEST(BulgeArc, HasTheHeightTheBulgeAsksFor) {
  const Vec2 from{10, 20};
  const Vec2 to{40, 60};  // a chord of 50
  for (const double bulge : {0.1, 0.5, 1.0, 2.5, -0.3, -1.0, -4.0}) {
    const auto arc = BulgeArc(from, to, bulge);
    ASSERT_TRUE(arc);
    EXPECT_LT(Length(arc->At(arc->start) - from), 1e-9);
    EXPECT_LT(Length(arc->At(arc->end) - to), 1e-9);
    // A counter-clockwise arc bulges to the right of its chord, by bulge times half the chord.
    const Vec2 top = arc->At(arc->start + arc->Span() / 2);
    const Vec2 wanted = Vec2{25, 40} - TurnedLeft(Vec2{0.6, 0.8}) * (bulge * 25);
    EXPECT_LT(Length(top - wanted), 1e-9) << bulge;
  }
  EXPECT_FALSE(BulgeArc(from, to, 0));
  EXPECT_FALSE(BulgeArc(from, from, 1));
}

// A point of the device's arc, converted back to Y down.
Vec2 DevicePoint(Vec2 center, const AxisArc& axes, double t) {
  const Vec2 own{axes.radiusA * std::cos(t), axes.radiusB * std::sin(t)};
  const Vec2 turned = Affine::Rotation(axes.rotation).Direction(own);
  return {center.x + turned.x, center.y - turned.y};
}

TEST(AxesOnPaper, DrawTheSameArcUnderAnyMap) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> any(-2, 2);
  for (int round = 0; round < 500; ++round) {
    const ConicArc own = CircularArc({any(random), any(random)}, 3, {any(random), any(random) + 5});
    const ConicArc arc =
        Transformed(own, {any(random), any(random), any(random), any(random), any(random), any(random)});
    const AxisArc axes = AxesOnPaper(arc);
    EXPECT_GE(axes.radiusA, axes.radiusB);
    EXPECT_GE(axes.radiusB, 0);
    EXPECT_NEAR(axes.end - axes.start, arc.Span(), 1e-9);
    // Evenly spaced parameters are the same points, in this or in the opposite order.
    const bool same = Length(DevicePoint(arc.center, axes, axes.start) - arc.At(arc.start)) < 1e-9;
    for (int i = 0; i <= 8; ++i) {
      const double part = i / 8.0;
      const Vec2 wanted = arc.At(arc.start + arc.Span() * (same ? part : 1 - part));
      const Vec2 drawn = DevicePoint(arc.center, axes, axes.start + arc.Span() * part);
      EXPECT_LT(Length(drawn - wanted), 1e-9) << round;
    }
  }
}

TEST(ConicArc, CubicsAndPolylinesKeepTheirTolerance) {
  for (const double radius : {0.3, 40.0, 2500.0, 90000.0}) {
    const ConicArc arc = CircularArc({10, -10}, radius, {0.3, 5.9});
    std::vector<Cubic> cubics;
    AppendCubics(arc, 0.02, cubics);
    double worst = 0;
    for (const Cubic& cubic : cubics) {
      for (int i = 0; i <= 20; ++i) {
        worst = std::max(worst, std::abs(Length(cubic.At(i / 20.0) - arc.center) - radius));
      }
    }
    EXPECT_LT(worst, 0.02) << radius;
    EXPECT_LT(Length(cubics.back().points[3] - arc.At(5.9)), 1e-9);
    EXPECT_LT(cubics.size(), 60U);

    std::vector<Vec2> points{arc.At(arc.start)};
    AppendFlattened(arc, 0.25, points);
    for (size_t i = 1; i < points.size(); ++i) {
      const Vec2 middle = Between(points[i - 1], points[i], 0.5);
      EXPECT_LT(radius - Length(middle - arc.center), 0.25) << radius;
    }
  }
}

TEST(Box, HoldsArcsAndCubicsExactly) {
  std::mt19937 random(11);
  std::uniform_real_distribution<double> any(-3, 3);
  const auto point = [&] { return Vec2{any(random), any(random)}; };
  const auto expectTight = [](const Box& box, const auto& at) {
    Box sampled;
    for (int i = 0; i <= 4000; ++i) sampled.Add(at(i / 4000.0));
    EXPECT_NEAR(box.low.x, sampled.low.x, 1e-4);
    EXPECT_NEAR(box.low.y, sampled.low.y, 1e-4);
    EXPECT_NEAR(box.high.x, sampled.high.x, 1e-4);
    EXPECT_NEAR(box.high.y, sampled.high.y, 1e-4);
  };
  for (int round = 0; round < 100; ++round) {
    const ConicArc arc{point(), point(), point(), any(random), any(random)};
    Box box;
    AddToBox(arc, box);
    expectTight(box, [&](double t) { return arc.At(arc.start + arc.Span() * t); });

    const Cubic cubic{{point(), point(), point(), point()}};
    box = {};
    AddToBox(cubic, box);
    expectTight(box, [&](double t) { return cubic.At(t); });
  }
}

}  // namespace
}  // namespace hdiplot
