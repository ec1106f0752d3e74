// Affine maps of the plane.
#pragma once

#include <algorithm>
#include <cmath>

#include "hdiplot/geometry/points.h"

namespace hdiplot {

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

  // The largest factor by which the map stretches a length: its larger singular value.
  [[nodiscard]] double LargestScale() const {
    return (std::hypot(a + d, b - c) + std::hypot(a - d, b + c)) / 2;
  }

  // Whether circles stay circles.
  [[nodiscard]] bool IsSimilarity() const {
    const double difference = std::min(std::hypot(a - d, b + c), std::hypot(a + d, b - c));
    return difference <= 1e-6 * LargestScale();
  }

  // Must have a determinant.
  [[nodiscard]] Affine Inverse() const {
    const double area = Determinant();
    return {d / area, -b / area, -c / area, a / area, (c * f - d * e) / area, (b * e - a * f) / area};
  }

  // Takes (1, 0) to `right`, (0, 1) to `up`, and then the origin to `origin`.
  [[nodiscard]] static Affine OfAxes(Vec2 right, Vec2 up, Vec2 origin) {
    return {right.x, right.y, up.x, up.y, origin.x, origin.y};
  }
  [[nodiscard]] static Affine Translation(Vec2 by) { return {1, 0, 0, 1, by.x, by.y}; }
  [[nodiscard]] static Affine Scaling(double x, double y) { return {x, 0, 0, y, 0, 0}; }
  [[nodiscard]] static Affine Rotation(double angle) {
    const Vec2 right = hdiplot::Direction(angle);
    return OfAxes(right, TurnedLeft(right), {});
  }
};

// The map that applies `inner` first.
[[nodiscard]] inline Affine operator*(const Affine& outer, const Affine& inner) {
  const Vec2 x = outer.Direction({inner.a, inner.b});
  const Vec2 y = outer.Direction({inner.c, inner.d});
  const Vec2 origin = outer({inner.e, inner.f});
  return {x.x, x.y, y.x, y.y, origin.x, origin.y};
}

}  // namespace hdiplot
