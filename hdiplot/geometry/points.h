// Points and vectors of the plane and of space, and boxes around points.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

namespace hdiplot {

struct Vec2 {
  double x = 0;
  double y = 0;
  bool operator==(const Vec2&) const = default;
};

[[nodiscard]] inline Vec2 operator+(Vec2 a, Vec2 b) { return {a.x + b.x, a.y + b.y}; }
[[nodiscard]] inline Vec2 operator-(Vec2 a, Vec2 b) { return {a.x - b.x, a.y - b.y}; }
[[nodiscard]] inline Vec2 operator*(Vec2 a, double factor) { return {a.x * factor, a.y * factor}; }
[[nodiscard]] inline double Dot(Vec2 a, Vec2 b) { return a.x * b.x + a.y * b.y; }
[[nodiscard]] inline double Cross(Vec2 a, Vec2 b) { return a.x * b.y - a.y * b.x; }
[[nodiscard]] inline double Length(Vec2 a) { return std::sqrt(a.x * a.x + a.y * a.y); }
[[nodiscard]] inline Vec2 TurnedLeft(Vec2 a) { return {-a.y, a.x}; }
[[nodiscard]] inline Vec2 Between(Vec2 a, Vec2 b, double part) { return a + (b - a) * part; }
[[nodiscard]] inline bool IsFinite(Vec2 a) { return std::isfinite(a.x) && std::isfinite(a.y); }
// The zero vector stays as it is.
[[nodiscard]] inline Vec2 Unit(Vec2 a) {
  const double length = Length(a);
  return length > 0 ? a * (1 / length) : Vec2{};
}
// The unit vector at `angle` radians.
[[nodiscard]] inline Vec2 Direction(double angle) { return {std::cos(angle), std::sin(angle)}; }

struct Vec3 {
  double x = 0;
  double y = 0;
  double z = 0;
  bool operator==(const Vec3&) const = default;
};

[[nodiscard]] inline Vec3 operator*(Vec3 a, double factor) {
  return {a.x * factor, a.y * factor, a.z * factor};
}
[[nodiscard]] inline Vec3 operator/(Vec3 a, double divisor) {
  return {a.x / divisor, a.y / divisor, a.z / divisor};
}
[[nodiscard]] inline Vec3 Cross(Vec3 a, Vec3 b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
[[nodiscard]] inline double Length(Vec3 a) { return std::hypot(a.x, a.y, a.z); }
[[nodiscard]] inline Vec2 Flat(Vec3 a) { return {a.x, a.y}; }

inline constexpr double kRoundingNoise = 1e-12;  // relative to the largest coordinate

// The smallest box around the points added so far.
struct Box {
  Vec2 low{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity()};
  Vec2 high{-std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};

  [[nodiscard]] bool Empty() const { return !(low.x <= high.x); }
  [[nodiscard]] double Width() const { return Empty() ? 0 : high.x - low.x; }
  [[nodiscard]] double Height() const { return Empty() ? 0 : high.y - low.y; }
  // The largest absolute coordinate. Differences below kRoundingNoise times this count as zero.
  [[nodiscard]] double Magnitude() const {
    return Empty() ? 0 : std::max({std::abs(low.x), std::abs(low.y), std::abs(high.x), std::abs(high.y)});
  }

  // Whether `p` lies in the box or within `around` of it.
  [[nodiscard]] bool Contains(Vec2 p, double around = 0) const {
    return p.x >= low.x - around && p.x <= high.x + around && p.y >= low.y - around && p.y <= high.y + around;
  }

  // Adds the square of half side `around` about `p`. Ignores a point that is not finite.
  void Add(Vec2 p, double around = 0) {
    if (!IsFinite(p)) return;
    low = {std::min(low.x, p.x - around), std::min(low.y, p.y - around)};
    high = {std::max(high.x, p.x + around), std::max(high.y, p.y + around)};
  }
};

// The part that both boxes have in common. Empty when there is none.
[[nodiscard]] inline Box Common(const Box& a, const Box& b) {
  const Box common{{std::max(a.low.x, b.low.x), std::max(a.low.y, b.low.y)},
                   {std::min(a.high.x, b.high.x), std::min(a.high.y, b.high.y)}};
  return common.low.x <= common.high.x && common.low.y <= common.high.y ? common : Box{};
}

}  // namespace hdiplot
