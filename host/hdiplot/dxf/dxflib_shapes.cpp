// The shapes of entities, from what dxflib calls back with.
//
// dxflib does not have the hidden edges of a 3DFACE; these come from the entity's groups. LINE, POINT,
// ELLIPSE, SPLINE, 3DFACE and LEADER are in world coordinates whatever their extrusion direction, the others
// in their own plane.
#include <algorithm>
#include <array>
#include <numbers>
#include <span>
#include <utility>

#include "host/hdiplot/ascii_case.h"
#include "host/hdiplot/dxf/dxflib_adapter.h"
#include "host/hdiplot/dxf/spline_check.h"

namespace hdiplot {
namespace {

constexpr unsigned kSplineClosed = 1;
constexpr int64_t kMostCopies = 32767;  // in one direction of an INSERT's array

// dxflib puts 0 for what is missing; these have to be there.
struct ShapeType {
  std::string_view name;
  std::span<const int> needed;
};

constexpr int kPoint[] = {10, 20};
constexpr int kTwoPoints[] = {10, 20, 11, 21};
constexpr int kCircle[] = {10, 20, 40};
constexpr int kArc[] = {10, 20, 40, 50, 51};
constexpr int kEllipse[] = {10, 20, 11, 21, 40};
constexpr int kThreePoints[] = {10, 20, 11, 21, 12, 22};
constexpr int kInsert[] = {2, 10, 20};

constexpr std::array kShapeTypes = {
    ShapeType{"POINT", kPoint},        ShapeType{"LINE", kTwoPoints},    ShapeType{"ARC", kArc},
    ShapeType{"CIRCLE", kCircle},      ShapeType{"ELLIPSE", kEllipse},   ShapeType{"SPLINE", {}},
    ShapeType{"INSERT", kInsert},      ShapeType{"SOLID", kThreePoints}, ShapeType{"TRACE", kThreePoints},
    ShapeType{"3DFACE", kThreePoints}, ShapeType{"LEADER", kPoint},
};

int Copies(const DxfObject& insert, int code) {
  const Group* group = insert.Find(code);
  if (!group || group->integer == 0) return 1;
  if (group->integer < 0 || group->integer > kMostCopies) {
    throw DxfFault{group->ValueLine(), "an INSERT cannot have " + std::to_string(group->integer) +
                                           (code == 70 ? " columns" : " rows")};
  }
  return static_cast<int>(group->integer);
}

}  // namespace

bool DxflibAdapter::ReadsShape(std::string_view type) {
  return std::ranges::find(kShapeTypes, type, &ShapeType::name) != kShapeTypes.end();
}

Shape DxflibAdapter::ReadShape(const DxfObject& entity) {
  entity.Require(std::ranges::find(kShapeTypes, entity.type, &ShapeType::name)->needed);
  leader_.clear();
  spline_ = {};
  if (entity.Count(10) != entity.Count(20) || entity.Count(11) != entity.Count(21)) {
    throw DxfFault{entity.line, std::string(entity.type) + " has points with only one coordinate"};
  }
  Feed(entity);
  if (entity.type == "SPLINE") return FinishedSpline();
  if (entity.type == "LEADER") return FinishedLeader();
  if (!shape_) throw DxfFault{entity.line, std::string(entity.type) + " cannot be read"};
  return std::move(*shape_);
}

void DxflibAdapter::addPoint(const DL_PointData& data) { shape_ = PointEntity{{data.x, data.y}}; }

void DxflibAdapter::addLine(const DL_LineData& data) {
  shape_ = LineEntity{{data.x1, data.y1}, {data.x2, data.y2}};
}

void DxflibAdapter::addArc(const DL_ArcData& data) {
  CheckRadius(data.radius);
  shape_ = plane_.ProjectArcEntity({data.cx, data.cy}, data.cz, data.radius,
                                   NormalizedSweep(Radians(data.angle1), Radians(data.angle2)));
}

void DxflibAdapter::addCircle(const DL_CircleData& data) {
  CheckRadius(data.radius);
  shape_ = plane_.ProjectArcEntity({data.cx, data.cy}, data.cz, data.radius, {0, 2 * std::numbers::pi});
}

void DxflibAdapter::CheckRadius(double radius) const {
  if (radius >= 0) return;
  throw DxfFault{object_->Find(40)->ValueLine(), std::string(object_->type) + " has a negative radius"};
}

void DxflibAdapter::addEllipse(const DL_EllipseData& data) {
  const Vec3 major = {data.mx, data.my, data.mz};
  const Vec3 minor = plane_.MinorDirection(major);
  shape_ = EllipseFromDiameters({data.cx, data.cy}, {major.x, major.y},
                                {minor.x * data.ratio, minor.y * data.ratio},
                                NormalizedSweep(data.angle1, data.angle2));
}

void DxflibAdapter::addInsert(const DL_InsertData& data) {
  InsertEntity insert;
  insert.block = UpperCase(names_.Decode(data.name));
  insert.at = {data.ipx, data.ipy};
  insert.scaleX = data.sx;
  insert.scaleY = data.sy;
  insert.rotation = Radians(data.angle);
  insert.mirrored = plane_.GetKind() == Ocs::Kind::kMirrored;
  insert.columns = Copies(*object_, 70);
  insert.rows = Copies(*object_, 71);
  insert.columnSpacing = data.colSp;
  insert.rowSpacing = data.rowSp;
  shape_ = std::move(insert);
}

// Three corners are written as four, the last one twice, or without the fourth.
std::vector<Vec2> DxflibAdapter::Corners(const DL_TraceData& data, const Ocs& plane) const {
  std::vector<Vec2> corners;
  for (size_t i = 0; i < 4; ++i) corners.push_back(plane.Project({data.x[i], data.y[i], data.z[i]}));
  const bool fourthIsThird = data.x[3] == data.x[2] && data.y[3] == data.y[2] && data.z[3] == data.z[2];
  if (fourthIsThird || !object_->Find(13)) corners.pop_back();
  return corners;
}

void DxflibAdapter::addSolid(const DL_SolidData& data) {
  SolidEntity solid{Corners(data, plane_)};
  if (solid.corners.size() == 4) std::swap(solid.corners[2], solid.corners[3]);  // written in a Z
  shape_ = std::move(solid);
}

void DxflibAdapter::addTrace(const DL_TraceData& data) { addSolid(data); }

void DxflibAdapter::add3dFace(const DL_3dFaceData& data) {
  FaceEntity face;
  face.corners = Corners(data, Ocs());
  const auto hidden = static_cast<uint64_t>(object_->Integer(70, 0));
  for (size_t i = 0; i < 4; ++i) face.edgeVisible[i] = (hidden >> i & 1) == 0;
  // Of a triangle the third edge, back to the start, is the fourth of the four.
  if (face.corners.size() == 3) face.edgeVisible[2] = face.edgeVisible[3];
  shape_ = std::move(face);
}

void DxflibAdapter::addSpline(const DL_SplineData& data) {
  spline_.degree = static_cast<int>(data.degree);
  spline_.closed = (static_cast<unsigned>(data.flags) & kSplineClosed) != 0;
}

void DxflibAdapter::addControlPoint(const DL_ControlPointData& data) {
  spline_.controlPoints.push_back({data.x, data.y});
  spline_.weights.push_back(data.w);
}

void DxflibAdapter::addFitPoint(const DL_FitPointData& data) {
  spline_.fitPoints.push_back({data.x, data.y});
}

void DxflibAdapter::addKnot(const DL_KnotData& data) { spline_.knots.push_back(data.k); }

Shape DxflibAdapter::FinishedSpline() const {
  SplineEntity spline = spline_;
  // dxflib fills up missing weights with 1.
  const size_t weights = object_->Count(41);
  if (weights == 0) spline.weights.clear();
  if (weights != 0 && weights != spline.controlPoints.size()) spline.weights.resize(weights, 1);
  CompleteSpline(spline, object_->line);
  return spline;
}

void DxflibAdapter::addLeader(const DL_LeaderData& data) { leaderIsCurved_ = data.leaderPathType == 1; }

void DxflibAdapter::addLeaderVertex(const DL_LeaderVertexData& data) { leader_.push_back({data.x, data.y}); }

Shape DxflibAdapter::FinishedLeader() const {
  if (leaderIsCurved_ && leader_.size() > 2) {
    SplineEntity curve;
    curve.fitPoints = leader_;
    return curve;
  }
  PolylineEntity polyline;
  for (const Vec2& point : leader_) polyline.vertices.push_back({point, 0, 0, 0});
  return polyline;
}

}  // namespace hdiplot
