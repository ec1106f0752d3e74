// Plane geometry of the plotter: vectors, affine maps and boxes.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

#include "hdiplot/model/drawing.h"

namespace hdiplot {

[[nodiscard]] inline Vec2 operator+(Vec2 a, Vec2 b) { return {a.x + b.x, a.y + b.y}; }
[[nodiscard]] inline Vec2 operator-(Vec2 a, Vec2 b) { return {a.x - b.x, a.y - b.y}; }
[[nodiscard]] inline Vec2 operator*(Vec2 a, double factor) { return {a.x * factor, a.y * factor}; }
[[nodiscard]] inline double Dot(Vec2 a, Vec2 b) { return a.x * b.x + a.y * b.y; }
[[nodiscard]] inline double Cross(Vec2 a, Vec2 b) { return a.x * b.y - a.y * b.x; }
[[nodiscard]] inline double Length(Vec2 a) { return std::sqrt(a.x * a.x + a.y * a.y); }
[[nodiscard]] inline Vec2 TurnedLeft(Vec2 a) { return {-a.y, a.x}; }
[[nodiscard]] inline Vec2 Between(Vec2 a, Vec2 b, double part) { return a + (b - a) * part; }
[[nodiscard]] inline bool IsFinite(Vec2 a) { return std::isfinite(a.x) && std::isfinite(a.y); }

// x' = a x + c y + e, y' = b x + d y + f.
struct Affine {
  double a = 1;
  double b = 0;
  double c = 0;
  double d = 1;
  double e = 0;
  double f = 0;

  [[nodiscard]] Vec2 operator()(Vec2 p) const { return {a * p.x + c * p.y + e, b * p.x + d * p.y + f}; }
  [[nodiscard]] Vec2 Direction(Vec2 v) const { return {a * v.x + c * v.y, b * v.x + d * v.y}; }
  [[nodiscard]] double Determinant() const { return a * d - b * c; }

  // The larger of the two factors by which the map stretches lengths (its larger singular value).
  [[nodiscard]] double LargestScale() const {
    return (std::hypot(a + d, b - c) + std::hypot(a - d, b + c)) / 2;
  }

  // Whether shapes keep their form, up to mirroring: circles stay circles.
  [[nodiscard]] bool IsSimilarity() const {
    const double difference = std::min(std::hypot(a - d, b + c), std::hypot(a + d, b - c));
    return difference <= 1e-6 * LargestScale();
  }

  [[nodiscard]] static Affine Translation(Vec2 by) { return {1, 0, 0, 1, by.x, by.y}; }
  [[nodiscard]] static Affine Scaling(double x, double y) { return {x, 0, 0, y, 0, 0}; }
  [[nodiscard]] static Affine Rotation(double angle) {
    const double cosine = std::cos(angle);
    const double sine = std::sin(angle);
    return {cosine, sine, -sine, cosine, 0, 0};
  }
};

// The map that applies `inner` first.
[[nodiscard]] inline Affine operator*(const Affine& outer, const Affine& inner) {
  const Vec2 x = outer.Direction({inner.a, inner.b});
  const Vec2 y = outer.Direction({inner.c, inner.d});
  const Vec2 origin = outer({inner.e, inner.f});
  return {x.x, x.y, y.x, y.y, origin.x, origin.y};
}

inline constexpr double kRoundingNoise = 1e-12;  // of the largest coordinate

// The smallest box around what was added; empty before.
struct Box {
  Vec2 low{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity()};
  Vec2 high{-std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};

  [[nodiscard]] bool Empty() const { return !(low.x <= high.x); }
  [[nodiscard]] double Width() const { return Empty() ? 0 : high.x - low.x; }
  [[nodiscard]] double Height() const { return Empty() ? 0 : high.y - low.y; }
  // The largest coordinate, whatever its sign. Differences of kRoundingNoise times it are none.
  [[nodiscard]] double Magnitude() const {
    return Empty() ? 0 : std::max({std::abs(low.x), std::abs(low.y), std::abs(high.x), std::abs(high.y)});
  }

  // A point that is not finite is passed over.
  void Add(Vec2 p, double around = 0) {
    if (!IsFinite(p)) return;
    low = {std::min(low.x, p.x - around), std::min(low.y, p.y - around)};
    high = {std::max(high.x, p.x + around), std::max(high.y, p.y + around)};
  }
};

}  // namespace hdiplot
