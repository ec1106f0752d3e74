// Arcs of ellipses and cubic curves: affine images, boxes, and the forms that the device draws.
#pragma once

#include <array>
#include <numbers>
#include <optional>
#include <vector>

#include "hdiplot/geometry/transform.h"

namespace hdiplot {

inline constexpr double kWholeTurn = 2 * std::numbers::pi;

constexpr double Radians(double degrees) { return degrees * (std::numbers::pi / 180); }

// Where an arc starts and ends, in radians or as an ellipse's parameter.
struct Sweep {
  double start = 0;
  double end = 0;
};

// The same arc with its end above its start, by at most a whole turn, and its start within two whole turns of
// 0. An empty sweep becomes a whole turn.
[[nodiscard]] Sweep NormalizedSweep(double start, double end);

// centre + u cos t + v sin t for t from start to end, in either direction. u and v are any two vectors, so
// every affine image of an arc is an arc.
struct ConicArc {
  Vec2 center;
  Vec2 u;
  Vec2 v;
  double start = 0;
  double end = 0;

  [[nodiscard]] Vec2 At(double t) const { return center + u * std::cos(t) + v * std::sin(t); }
  [[nodiscard]] Vec2 DerivativeAt(double t) const { return v * std::cos(t) - u * std::sin(t); }
  [[nodiscard]] double Span() const { return end - start; }
  // Between the larger half axis and sqrt(2) times it.
  [[nodiscard]] double Reach() const { return std::sqrt(Dot(u, u) + Dot(v, v)); }
};

[[nodiscard]] ConicArc CircularArc(Vec2 center, double radius, Sweep sweep);
// The arc of a polyline's segment. None when the segment is straight, or as good as straight at any
// resolution.
[[nodiscard]] std::optional<ConicArc> BulgeArc(Vec2 from, Vec2 to, double bulge);

// The same arc with `u` and `v` along the principal axes, `u` the longer one; angles move along.
[[nodiscard]] ConicArc OnPrincipalAxes(const ConicArc& arc);

[[nodiscard]] ConicArc Transformed(const ConicArc& arc, const Affine& map);

void AddToBox(const ConicArc& arc, Box& box);

// An arc in terms of its ellipse's axes, angles as values of the ellipse's parameter; seen with Y up.
struct AxisArc {
  double radiusA = 0;
  double radiusB = 0;
  double rotation = 0;
  double start = 0;
  double end = 0;  // above `start`
};

// The axes and angles on paper of an arc in a plane with Y down. The ends of a mirrored arc are exchanged.
[[nodiscard]] AxisArc AxesOnPaper(const ConicArc& arc);

struct Cubic {
  std::array<Vec2, 4> points;

  [[nodiscard]] Vec2 At(double t) const {
    const double s = 1 - t;
    return points[0] * (s * s * s) + points[1] * (3 * s * s * t) + points[2] * (3 * s * t * t) +
           points[3] * (t * t * t);
  }
};

// Appends cubic curves along the arc from its start to its end, within `tolerance` of it.
void AppendCubics(const ConicArc& arc, double tolerance, std::vector<Cubic>& cubics);

void AddToBox(const Cubic& cubic, Box& box);

// Append points along the curve, without its first and with its last point, such that their polyline is
// within `tolerance` of it.
void AppendFlattened(const ConicArc& arc, double tolerance, std::vector<Vec2>& points);
void AppendFlattened(const Cubic& cubic, double tolerance, std::vector<Vec2>& points);

}  // namespace hdiplot
