// LINE, POINT, ELLIPSE, SPLINE, 3DFACE and LEADER are in world coordinates whatever their extrusion
// direction, the others in their own plane.
#include "hdiplot/dxf/shape_reader.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "hdiplot/dxf/image_reader.h"
#include "hdiplot/dxf/object_plane.h"
#include "hdiplot/dxf/polyline_reader.h"
#include "hdiplot/dxf/spline_check.h"
#include "hdiplot/system/ascii_case.h"

namespace hdiplot {
namespace {

constexpr uint64_t kSplineClosed = 1;
constexpr int64_t kCurved = 1;
constexpr int64_t kMostCopies = 32767;  // in one direction of an INSERT's array

uint64_t FlagsOf(const DxfObject& entity) { return static_cast<uint64_t>(entity.Integer(70, 0)); }

Vec3 PointOf(const DxfObject& entity, int code) {
  return {entity.Real(code, 0), entity.Real(code + 10, 0), entity.Real(code + 20, 0)};
}

Vec2 FlatPointOf(const DxfObject& entity, int code) {
  return {entity.Real(code, 0), entity.Real(code + 10, 0)};
}

Vec2 NeededPoint(const DxfObject& entity, int code) {
  const int codes[] = {code, code + 10};
  entity.Require(codes);
  return FlatPointOf(entity, code);
}

double NeededReal(const DxfObject& entity, int code) {
  const int codes[] = {code};
  entity.Require(codes);
  return entity.Real(code, 0);
}

// All points of one code.
std::vector<Vec2> PointsOf(const DxfObject& entity, int code) {
  std::vector<Vec2> points;
  points.reserve(entity.Count(code));
  if (entity.Count(code + 10) != entity.Count(code)) {
    throw DxfFault{entity.place, std::string(entity.type) + " has points with only one coordinate"};
  }
  for (const Group& group : entity.groups) {
    if (group.code == code) points.push_back({group.number, 0});
    if (group.code == code + 10 && !points.empty()) points.back().y = group.number;
  }
  return points;
}

Shape ReadPoint(const DxfObject& entity) { return PointEntity{NeededPoint(entity, 10)}; }

Shape ReadLine(const DxfObject& entity) {
  return LineEntity{NeededPoint(entity, 10), NeededPoint(entity, 11)};
}

double RadiusOf(const DxfObject& entity) {
  const double radius = NeededReal(entity, 40);
  const size_t place = entity.Find(40)->place;
  const std::string type(entity.type);
  if (radius < 0) entity.faults->Report({place, type + " has a negative radius"});
  if (radius == 0 && !entity.faults->IsStrict()) throw DxfFault{place, type + " has no radius"};
  return std::fabs(radius);
}

Shape ReadCircle(const DxfObject& entity) {
  const Vec2 center = NeededPoint(entity, 10);
  return ProjectArcEntity(PlaneOf(entity), center, entity.Real(30, 0), RadiusOf(entity), {0, kWholeTurn});
}

Shape ReadArc(const DxfObject& entity) {
  const Vec2 center = NeededPoint(entity, 10);
  const double radius = RadiusOf(entity);
  const double start = NeededReal(entity, 50);
  const Sweep sweep = NormalizedSweep(Radians(start), Radians(NeededReal(entity, 51)));
  return ProjectArcEntity(PlaneOf(entity), center, entity.Real(30, 0), radius, sweep);
}

Shape ReadEllipse(const DxfObject& entity) {
  const Vec2 center = NeededPoint(entity, 10);
  (void)NeededPoint(entity, 11);
  const double ratio = NeededReal(entity, 40);
  const Vec3 major = PointOf(entity, 11);
  const Vec3 minor = PlaneOf(entity).MinorDirection(major);
  const Sweep sweep = NormalizedSweep(entity.Real(41, 0), entity.Real(42, kWholeTurn));
  return OnPrincipalAxes({center, Flat(major), Flat(minor) * ratio, sweep.start, sweep.end});
}

// Three corners are written as four, the last one twice, or without the fourth.
std::vector<Vec2> CornersOf(const DxfObject& entity, const Ocs& plane) {
  std::vector<Vec2> corners;
  for (const int code : {10, 11, 12}) {
    (void)NeededPoint(entity, code);
    corners.push_back(plane.Project(PointOf(entity, code)));
  }
  const Vec3 third = PointOf(entity, 12);
  const Vec3 fourth = PointOf(entity, 13);
  if (fourth != third && entity.Find(13)) corners.push_back(plane.Project(fourth));
  return corners;
}

Shape ReadSolid(const DxfObject& entity) {
  SolidEntity solid{CornersOf(entity, PlaneOf(entity))};
  if (solid.corners.size() == 4) std::swap(solid.corners[2], solid.corners[3]);  // written in a Z
  return solid;
}

Shape ReadFace(const DxfObject& entity) {
  FaceEntity face;
  face.corners = CornersOf(entity, Ocs());
  const uint64_t hidden = FlagsOf(entity);
  for (size_t i = 0; i < 4; ++i) face.edgeVisible[i] = (hidden >> i & 1) == 0;
  // Of a triangle the third edge, back to the start, is the fourth of the four.
  if (face.corners.size() == 3) face.edgeVisible[2] = face.edgeVisible[3];
  return face;
}

Shape ReadSpline(const DxfObject& entity) {
  SplineEntity spline;
  spline.degree = static_cast<int>(entity.Integer(71, spline.degree));
  spline.closed = (FlagsOf(entity) & kSplineClosed) != 0;
  spline.controlPoints = PointsOf(entity, 10);
  spline.fitPoints = PointsOf(entity, 11);
  for (const Group& group : entity.groups) {
    if (group.code == 40) spline.knots.push_back(group.number);
    if (group.code == 41) spline.weights.push_back(group.number);
  }
  entity.CheckCount(entity.Find(72), spline.knots.size());
  entity.CheckCount(entity.Find(73), spline.controlPoints.size());
  entity.CheckCount(entity.Find(74), spline.fitPoints.size());
  CompleteSpline(spline, entity.place);
  return spline;
}

Shape ReadLeader(const DxfObject& entity) {
  (void)NeededPoint(entity, 10);
  std::vector<Vec2> points = PointsOf(entity, 10);
  entity.CheckCount(entity.Find(76), points.size());
  if (entity.Integer(72, 0) == kCurved && points.size() > 2) {
    SplineEntity curve;
    curve.fitPoints = std::move(points);
    return curve;
  }
  PolylineEntity polyline;
  for (const Vec2& point : points) polyline.vertices.push_back({point, 0, 0, 0});
  return polyline;
}

// One where the number makes no sense.
int CopiesOf(const DxfObject& insert, int code) {
  const Group* group = insert.Find(code);
  if (!group || group->Integer() == 0) return 1;
  if (group->Integer() >= 0 && group->Integer() <= kMostCopies) return static_cast<int>(group->Integer());
  insert.faults->Report({group->place, "an INSERT cannot have " + std::to_string(group->Integer()) +
                                           (code == 70 ? " columns" : " rows")});
  return 1;
}

}  // namespace

ShapeReader FindShapeReader(std::string_view type) {
  constexpr std::pair<std::string_view, ShapeReader> kReaders[] = {
      {"LINE", ReadLine},      {"LWPOLYLINE", ReadLwPolyline}, {"ARC", ReadArc},       {"CIRCLE", ReadCircle},
      {"POINT", ReadPoint},    {"ELLIPSE", ReadEllipse},       {"SOLID", ReadSolid},   {"TRACE", ReadSolid},
      {"3DFACE", ReadFace},    {"SPLINE", ReadSpline},         {"LEADER", ReadLeader}, {"IMAGE", ReadImage},
      {"WIPEOUT", ReadWipeout}};
  const auto found = std::ranges::find(kReaders, type, &std::pair<std::string_view, ShapeReader>::first);
  return found == std::end(kReaders) ? nullptr : found->second;
}

InsertEntity ReadInsert(const DxfObject& entity, const NameDecoder& names) {
  InsertEntity insert;
  constexpr int kName[] = {2};
  entity.Require(kName);
  insert.at = NeededPoint(entity, 10);
  insert.block = UpperCase(names.Decode(*entity.Find(2)));
  insert.scaleX = entity.Real(41, 1);
  insert.scaleY = entity.Real(42, 1);
  insert.rotation = Radians(entity.Real(50, 0));
  insert.mirrored = PlaneOf(entity).GetKind() == Ocs::Kind::kMirrored;
  insert.columns = CopiesOf(entity, 70);
  insert.rows = CopiesOf(entity, 71);
  insert.columnSpacing = entity.Real(44, 0);
  insert.rowSpacing = entity.Real(45, 0);
  return insert;
}

}  // namespace hdiplot
