// The arbitrary axis algorithm of DXF, and what its planes do to arcs.
#include "hdiplot/geometry/ocs.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace hdiplot {
namespace {

constexpr double kPi = std::numbers::pi;

// A direction counts as straight up or down when its other parts are writing noise.
constexpr double kStraight = 1e-9;

// Angles that differ by whole turns only, but for writing noise, make a whole turn. Ends just above a whole
// turn are often 2 pi written with few digits.
constexpr double kNoTurn = 1e-9;
constexpr double kRoundedTurn = 1e-5;

constexpr double kChordAngle = kPi / 60;  // 3 degrees: how finely a bulge in a tilted plane is cut up

Vec3 Cross(Vec3 a, Vec3 b) { return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x}; }

Vec3 Normalized(Vec3 v) {
  const double length = std::hypot(v.x, v.y, v.z);
  return {v.x / length, v.y / length, v.z / length};
}

Vec2 Sum(Vec2 a, double factorA, Vec2 b, double factorB) {
  return {a.x * factorA + b.x * factorB, a.y * factorA + b.y * factorB};
}

// The vertices of a bulged segment up to, and without, its second end, widths running evenly.
void AppendChords(const PolyVertex& from, const PolyVertex& to, std::vector<PolyVertex>& chords) {
  const double sweep = 4 * std::atan(from.bulge);
  const Vec2 chord = {to.point.x - from.point.x, to.point.y - from.point.y};
  const double height = (1 - from.bulge * from.bulge) / (4 * from.bulge);  // of the centre above the chord
  const Vec2 center = {(from.point.x + to.point.x) / 2 - chord.y * height,
                       (from.point.y + to.point.y) / 2 + chord.x * height};
  const Vec2 radius = {from.point.x - center.x, from.point.y - center.y};
  const int pieces = std::max(1, static_cast<int>(std::ceil(std::fabs(sweep) / kChordAngle)));
  const auto widthAt = [&](int piece) {
    return from.startWidth + (from.endWidth - from.startWidth) * piece / pieces;
  };
  for (int piece = 0; piece < pieces; ++piece) {
    const double angle = sweep * piece / pieces;
    const Vec2 point = piece == 0 ? from.point
                                  : Vec2{center.x + radius.x * std::cos(angle) - radius.y * std::sin(angle),
                                         center.y + radius.x * std::sin(angle) + radius.y * std::cos(angle)};
    chords.push_back({point, 0, widthAt(piece), widthAt(piece + 1)});
  }
}

PolylineEntity WithChords(const PolylineEntity& polyline) {
  PolylineEntity chords;
  chords.closed = polyline.closed;
  const size_t count = polyline.vertices.size();
  for (size_t i = 0; i < count; ++i) {
    const PolyVertex& vertex = polyline.vertices[i];
    const PolyVertex& next = polyline.vertices[(i + 1) % count];
    const bool hasSegment = i + 1 < count || polyline.closed;
    if (hasSegment && vertex.bulge != 0 && vertex.point != next.point) {
      AppendChords(vertex, next, chords.vertices);
    } else {
      chords.vertices.push_back({vertex.point, 0, vertex.startWidth, vertex.endWidth});
    }
  }
  return chords;
}

}  // namespace

Sweep NormalizedSweep(double start, double end) {
  constexpr double kTurn = 2 * kPi;
  const double span = end - start;
  double rest = std::fmod(span, kTurn);
  if (rest < 0) rest += kTurn;
  if (rest < kNoTurn || (span > kTurn && rest < kRoundedTurn)) rest = kTurn;
  if (std::fabs(start) >= 2 * kTurn) start = std::fmod(start, kTurn);
  return {start, start + rest};
}

Ocs::Ocs(Vec3 extrusion) {
  if (std::hypot(extrusion.x, extrusion.y, extrusion.z) < 1e-100) extrusion = {0, 0, 1};
  axisZ_ = Normalized(extrusion);
  if (std::hypot(axisZ_.x, axisZ_.y) < kStraight) {
    kind_ = axisZ_.z > 0 ? Kind::kWorld : Kind::kMirrored;
    axisX_ = {axisZ_.z > 0 ? 1.0 : -1.0, 0, 0};
    axisY_ = {0, 1, 0};
    axisZ_ = {0, 0, axisX_.x};
    return;
  }
  kind_ = Kind::kTilted;
  const double kNearZ = 1.0 / 64;
  const bool nearZ = std::fabs(axisZ_.x) < kNearZ && std::fabs(axisZ_.y) < kNearZ;
  axisX_ = Normalized(Cross(nearZ ? Vec3{0, 1, 0} : Vec3{0, 0, 1}, axisZ_));
  axisY_ = Normalized(Cross(axisZ_, axisX_));
}

Ocs Ocs::Of(const DxfObject& object) {
  const Group* x = object.Find(210);
  if (x == nullptr && !object.Find(220) && !object.Find(230)) return {};
  return Ocs({object.Real(210, 0), object.Real(220, 0), object.Real(230, x ? 0.0 : 1.0)});
}

Vec2 Ocs::Project(Vec3 point) const {
  if (kind_ == Kind::kWorld) return {point.x, point.y};
  if (kind_ == Kind::kMirrored) return {-point.x, point.y};
  return {axisX_.x * point.x + axisY_.x * point.y + axisZ_.x * point.z,
          axisX_.y * point.x + axisY_.y * point.y + axisZ_.y * point.z};
}

HatchEdge Ocs::ProjectArc(Vec2 center, double elevation, double radius, Sweep sweep) const {
  const Vec2 seen = Project(center, elevation);
  if (kind_ == Kind::kWorld) return ArcEntity{seen, radius, sweep.start, sweep.end};
  if (kind_ == Kind::kMirrored) return ArcEntity{seen, radius, kPi - sweep.start, kPi - sweep.end};
  return EllipseFromDiameters(seen, Project(Vec2{radius, 0}), Project(Vec2{0, radius}), sweep);
}

Shape Ocs::ProjectArcEntity(Vec2 center, double elevation, double radius, Sweep sweep) const {
  if (kind_ == Kind::kMirrored) {
    return ArcEntity{Project(center, elevation), radius, kPi - sweep.end, kPi - sweep.start};
  }
  return std::visit([](const auto& edge) -> Shape { return edge; },
                    ProjectArc(center, elevation, radius, sweep));
}

PolylineEntity Ocs::ProjectPolyline(PolylineEntity polyline, double elevation) const {
  if (kind_ == Kind::kWorld) return polyline;
  PolylineEntity seen = kind_ == Kind::kTilted ? WithChords(polyline) : std::move(polyline);
  for (PolyVertex& vertex : seen.vertices) {
    vertex.point = Project(vertex.point, elevation);
    vertex.bulge = -vertex.bulge;
  }
  return seen;
}

Vec3 Ocs::MinorDirection(Vec3 major) const { return Cross(axisZ_, major); }

EllipseEntity EllipseFromDiameters(Vec2 center, Vec2 u, Vec2 v, Sweep sweep) {
  const double product = u.x * v.x + u.y * v.y;
  const double difference = (u.x * u.x + u.y * u.y) - (v.x * v.x + v.y * v.y);
  // Turned by this the first diameter is the longest.
  const double turn = std::fabs(product) <= 1e-12 * std::hypot(product, difference) && difference >= 0
                          ? 0.0
                          : 0.5 * std::atan2(2 * product, difference);
  return {center, Sum(u, std::cos(turn), v, std::sin(turn)), Sum(u, -std::sin(turn), v, std::cos(turn)),
          sweep.start - turn, sweep.end - turn};
}

}  // namespace hdiplot
