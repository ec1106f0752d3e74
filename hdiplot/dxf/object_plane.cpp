#include "hdiplot/dxf/object_plane.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>
#include <variant>

namespace hdiplot {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kChordAngle = kPi / 60;  // 3 degrees: how finely a bulge in a tilted plane is cut up

// The vertices of the bulged segment `arc` without its second end, widths running evenly.
void AppendChords(const PolyVertex& from, const ConicArc& arc, std::vector<PolyVertex>& chords) {
  const int pieces = std::max(1, static_cast<int>(std::ceil(std::abs(arc.Span()) / kChordAngle)));
  const auto widthAt = [&](int piece) {
    return from.startWidth + (from.endWidth - from.startWidth) * piece / pieces;
  };
  for (int piece = 0; piece < pieces; ++piece) {
    const Vec2 point = piece == 0 ? from.point : arc.At(arc.end * piece / pieces);
    chords.push_back({point, 0, widthAt(piece), widthAt(piece + 1)});
  }
}

PolylineEntity WithChords(const PolylineEntity& polyline) {
  PolylineEntity chords;
  chords.closed = polyline.closed;
  chords.continuousPattern = polyline.continuousPattern;
  const size_t count = polyline.vertices.size();
  for (size_t i = 0; i < count; ++i) {
    const PolyVertex& vertex = polyline.vertices[i];
    const PolyVertex& next = polyline.vertices[(i + 1) % count];
    const bool hasSegment = i + 1 < count || polyline.closed;
    if (const auto arc = BulgeArc(vertex.point, next.point, vertex.bulge); arc && hasSegment) {
      AppendChords(vertex, *arc, chords.vertices);
    } else {
      chords.vertices.push_back({vertex.point, 0, vertex.startWidth, vertex.endWidth});
    }
  }
  return chords;
}

}  // namespace

Ocs PlaneOf(const DxfObject& object) {
  const Group* x = object.Find(210);
  if (x == nullptr && !object.Find(220) && !object.Find(230)) return {};
  return Ocs({object.Real(210, 0), object.Real(220, 0), object.Real(230, x ? 0.0 : 1.0)});
}

HatchEdge ProjectArc(const Ocs& plane, Vec2 center, double elevation, double radius, Sweep sweep) {
  const Vec2 seen = plane.Project(center, elevation);
  if (plane.GetKind() == Ocs::Kind::kWorld) return ArcEntity{seen, radius, sweep.start, sweep.end};
  if (plane.GetKind() == Ocs::Kind::kMirrored) {
    return ArcEntity{seen, radius, kPi - sweep.start, kPi - sweep.end};
  }
  return OnPrincipalAxes(
      {seen, plane.Project(Vec2{radius, 0}), plane.Project(Vec2{0, radius}), sweep.start, sweep.end});
}

Shape ProjectArcEntity(const Ocs& plane, Vec2 center, double elevation, double radius, Sweep sweep) {
  if (plane.GetKind() == Ocs::Kind::kMirrored) {
    return ArcEntity{plane.Project(center, elevation), radius, kPi - sweep.end, kPi - sweep.start};
  }
  return std::visit([](const auto& edge) -> Shape { return edge; },
                    ProjectArc(plane, center, elevation, radius, sweep));
}

PolylineEntity ProjectPolyline(const Ocs& plane, PolylineEntity polyline, double elevation) {
  if (plane.GetKind() == Ocs::Kind::kWorld) return polyline;
  PolylineEntity seen = plane.GetKind() == Ocs::Kind::kTilted ? WithChords(polyline) : std::move(polyline);
  for (PolyVertex& vertex : seen.vertices) {
    vertex.point = plane.Project(vertex.point, elevation);
    vertex.bulge = -vertex.bulge;
  }
  return seen;
}

ArcEntity CircleThrough(Vec2 a, Vec2 b, Vec2 c) {
  const Vec2 toB = b - a;
  const Vec2 toC = c - a;
  const double twice = 2 * Cross(toB, toC);
  if (std::abs(twice) < 1e-12 * Length(toB) * Length(toC)) return {};
  const double squareB = Dot(toB, toB);
  const double squareC = Dot(toC, toC);
  const Vec2 center{(toC.y * squareB - toB.y * squareC) / twice, (toB.x * squareC - toC.x * squareB) / twice};
  return {a + center, Length(center), 0, kWholeTurn};
}

}  // namespace hdiplot
