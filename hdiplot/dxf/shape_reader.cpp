// LINE, POINT, ELLIPSE, SPLINE and 3DFACE are in world coordinates whatever their extrusion direction, the
// others in their own plane.
#include "hdiplot/dxf/shape_reader.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "hdiplot/dxf/object_plane.h"
#include "hdiplot/geometry/standard_shapes.h"
#include "hdiplot/geometry/transform.h"
#include "hdiplot/system/ascii_case.h"

namespace hdiplot {
namespace {

double RadiusOf(const DxfObject& entity) {
  const Group& radius = entity.Needed(40);
  const std::string type(entity.type);
  if (radius.number < 0) entity.faults.Report({radius.place, type + " has a negative radius"});
  if (radius.number == 0 && !entity.faults.IsStrict()) throw DxfFault{radius.place, type + " has no radius"};
  return std::fabs(radius.number);
}

// A triangle has its third corner twice, or no fourth one.
std::vector<Vec2> CornersOf(const DxfObject& entity, const Ocs& plane) {
  std::vector<Vec2> corners;
  for (const int code : {10, 11, 12}) {
    (void)entity.NeededPoint(code);
    corners.push_back(plane.Project(entity.SpacePoint(code)));
  }
  const Vec3 fourth = entity.SpacePoint(13);
  if (entity.Find(13) && fourth != entity.SpacePoint(12)) corners.push_back(plane.Project(fourth));
  return corners;
}

// One if the number is invalid.
int CopiesOf(const DxfObject& insert, int code) {
  constexpr int64_t kMostCopies = 32767;
  const int64_t copies = insert.Integer(code, 1);
  if (copies >= 0 && copies <= kMostCopies) return std::max(1, static_cast<int>(copies));
  insert.faults.Report({insert.Find(code)->place,
                        fmt::format("an INSERT cannot have {} {}", copies, code == 70 ? "columns" : "rows")});
  return 1;
}

// Uniform knots, so that the curve starts and ends at control points.
std::vector<double> EvenKnots(size_t controlPoints, size_t degree) {
  std::vector<double> knots(controlPoints + degree + 1);
  const size_t steps = controlPoints - degree;
  for (size_t i = 0; i < knots.size(); ++i) {
    knots[i] = static_cast<double>(std::clamp(i, degree, degree + steps) - degree);
  }
  return knots;
}

void CheckKnots(const SplineEntity& spline, size_t place) {
  const auto degree = static_cast<size_t>(spline.degree);
  const size_t needed = spline.controlPoints.size() + degree + 1;
  if (spline.knots.size() != needed) {
    throw DxfFault{
        place, fmt::format("a spline of degree {} with {} control points needs {} knots, but has {}", degree,
                           spline.controlPoints.size(), needed, spline.knots.size())};
  }
  if (!std::ranges::is_sorted(spline.knots)) throw DxfFault{place, "the spline's knots are not in order"};
  if (spline.knots[degree] >= spline.knots[spline.controlPoints.size()]) {
    throw DxfFault{place, "the spline's knots leave it no length"};
  }
}

void CheckWeights(SplineEntity& spline, size_t place) {
  if (spline.weights.empty()) return;
  if (spline.weights.size() != spline.controlPoints.size()) {
    throw DxfFault{place, fmt::format("the spline has {} control points, but {} weights",
                                      spline.controlPoints.size(), spline.weights.size())};
  }
  if (std::ranges::any_of(spline.weights, [](double weight) { return weight <= 0; })) {
    throw DxfFault{place, "a weight of the spline is not above 0"};
  }
  if (std::ranges::adjacent_find(spline.weights, std::not_equal_to<>()) == spline.weights.end()) {
    spline.weights.clear();
  }
}

}  // namespace

PointEntity ReadPoint(const DxfObject& entity) { return {entity.NeededPoint(10)}; }

LineEntity ReadLine(const DxfObject& entity) { return {entity.NeededPoint(10), entity.NeededPoint(11)}; }

RayEntity ReadRay(const DxfObject& entity) {
  return {entity.NeededPoint(10), entity.NeededPoint(11), entity.type == "XLINE"};
}

Shape ReadCircle(const DxfObject& entity) {
  const Vec2 center = entity.NeededPoint(10);
  return ProjectArcEntity(PlaneOf(entity), center, entity.Real(30, 0), RadiusOf(entity), {0, kWholeTurn});
}

Shape ReadArc(const DxfObject& entity) {
  const Vec2 center = entity.NeededPoint(10);
  const double radius = RadiusOf(entity);
  const double start = entity.Needed(50).number;
  const Sweep sweep = NormalizedSweep(Radians(start), Radians(entity.Needed(51).number));
  return ProjectArcEntity(PlaneOf(entity), center, entity.Real(30, 0), radius, sweep);
}

EllipseEntity ReadEllipse(const DxfObject& entity) {
  const Vec2 center = entity.NeededPoint(10);
  (void)entity.NeededPoint(11);
  const double ratio = entity.Needed(40).number;
  const Vec3 major = entity.SpacePoint(11);
  const Vec3 minor = PlaneOf(entity).MinorDirection(major);
  const Sweep sweep = NormalizedSweep(entity.Real(41, 0), entity.Real(42, kWholeTurn));
  return OnPrincipalAxes({center, Flat(major), Flat(minor) * ratio, sweep.start, sweep.end});
}

SolidEntity ReadSolid(const DxfObject& entity) {
  SolidEntity solid{CornersOf(entity, PlaneOf(entity))};
  if (solid.corners.size() == 4) std::swap(solid.corners[2], solid.corners[3]);  // written in a Z
  return solid;
}

FaceEntity ReadFace(const DxfObject& entity) {
  FaceEntity face;
  face.corners = CornersOf(entity, Ocs());
  const uint64_t hidden = entity.Flags(70);
  for (size_t i = 0; i < 4; ++i) face.edgeVisible[i] = (hidden >> i & 1) == 0;
  // A triangle's third edge, back to the start, is written as the fourth one.
  if (face.corners.size() == 3) face.edgeVisible[2] = face.edgeVisible[3];
  return face;
}

SplineEntity ReadSpline(const DxfObject& entity) {
  constexpr uint64_t kClosed = 1;
  SplineEntity spline;
  spline.degree = static_cast<int>(entity.Integer(71, spline.degree));
  spline.closed = (entity.Flags(70) & kClosed) != 0;
  spline.controlPoints = entity.Points(10);
  spline.fitPoints = entity.Points(11);
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

// A spline, and behind it the helix that it was made from, in groups of the same codes.
SplineEntity ReadHelix(const DxfObject& entity) {
  const auto mark = std::ranges::find_if(
      entity.groups, [](const Group& group) { return group.code == 100 && group.Value() == "AcDbHelix"; });
  DxfObject spline = entity;
  spline.groups.erase(spline.groups.begin() + (mark - entity.groups.begin()), spline.groups.end());
  return ReadSpline(spline);
}

MeshEntity ReadSymbol(const DxfObject& entity) {
  MeshEntity symbol{StandardShape(std::string_view(UpperCase(entity.Text(2))))};
  const Ocs plane = PlaneOf(entity);
  const Vec2 at = entity.NeededPoint(10);
  const double size = entity.Real(40, 1);
  const Affine form = Affine::Rotation(entity.Angle(50)) *
                      Affine{size * entity.Real(41, 1), 0, size * std::tan(entity.Angle(51)), size, 0, 0};
  for (auto& stroke : symbol.edges) {
    for (Vec2& p : stroke) p = plane.Project(at + form(p), entity.Real(30, 0));
  }
  return symbol;
}

InsertEntity ReadInsert(const DxfObject& entity, NameCache& names) {
  InsertEntity insert;
  const Group& block = entity.Needed(2);
  const Vec2 at = entity.NeededPoint(10);
  insert.block = names.Folded(block);
  insert.scaleX = entity.Real(41, 1);
  insert.scaleY = entity.Real(42, 1);
  insert.rotation = entity.Angle(50);
  const Ocs plane = PlaneOf(entity);
  insert.at = plane.Project(at, entity.Real(30, 0));
  insert.right = plane.Project(Vec2{1, 0});
  insert.up = plane.Project(Vec2{0, 1});
  insert.columns = CopiesOf(entity, 70);
  insert.rows = CopiesOf(entity, 71);
  insert.columnSpacing = entity.Real(44, 0);
  insert.rowSpacing = entity.Real(45, 0);
  return insert;
}

void CompleteSpline(SplineEntity& spline, size_t place) {
  constexpr int kHighestDegree = 25;
  if (spline.degree < 1 || spline.degree > kHighestDegree) {
    throw DxfFault{place, fmt::format("a spline cannot have the degree {}", spline.degree)};
  }
  if (spline.controlPoints.empty()) {
    if (spline.fitPoints.size() < 2) throw DxfFault{place, "the spline has no points"};
    spline.knots.clear();
    spline.weights.clear();
    return;
  }
  const auto degree = static_cast<size_t>(spline.degree);
  if (spline.controlPoints.size() <= degree) {
    throw DxfFault{place, fmt::format("a spline of degree {} needs {} control points, but has {}", degree,
                                      degree + 1, spline.controlPoints.size())};
  }
  if (spline.knots.empty()) spline.knots = EvenKnots(spline.controlPoints.size(), degree);
  CheckKnots(spline, place);
  CheckWeights(spline, place);
  spline.fitPoints.clear();
}

}  // namespace hdiplot
