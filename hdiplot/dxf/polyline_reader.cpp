#include "hdiplot/dxf/polyline_reader.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <set>
#include <utility>

#include "hdiplot/dxf/object_plane.h"

namespace hdiplot {
namespace {

// Group 70 of POLYLINE.
constexpr uint64_t kClosed = 1;  // a mesh in the direction of M
constexpr uint64_t kSplineFit = 4;
constexpr uint64_t kInSpace = 8;
constexpr uint64_t kMesh = 16;
constexpr uint64_t kClosedN = 32;
constexpr uint64_t kPolyface = 64;
constexpr uint64_t kContinuousPattern = 128;  // of LWPOLYLINE, too

// Group 70 of VERTEX.
constexpr uint64_t kFrame = 16;  // a control point of a fitted curve or surface, not on it
constexpr uint64_t kMeshVertex = 64;
constexpr uint64_t kFaceOrCorner = 128;  // of a polyface mesh; a corner is a mesh vertex, too

// In ascending order: neighbouring faces share an edge in opposite directions.
using EdgeKey = std::pair<int64_t, int64_t>;

}  // namespace

PolylineEntity ReadLwPolyline(const DxfObject& object) {
  PolylineEntity polyline;
  polyline.closed = (object.Flags(70) & kClosed) != 0;
  polyline.continuousPattern = (object.Flags(70) & kContinuousPattern) != 0;
  const double width = object.Real(43, 0);  // of vertices without their own
  polyline.vertices.reserve(static_cast<size_t>(std::ranges::count(object.groups, 10, &Group::code)));
  size_t ordinates = 0;
  for (const Group& group : object.groups) {
    if (group.code == 10) {
      polyline.vertices.push_back({{group.number, 0}, 0, width, width});
      continue;
    }
    if (polyline.vertices.empty()) continue;
    PolyVertex& vertex = polyline.vertices.back();
    if (group.code == 20) {
      vertex.point.y = group.number;
      ++ordinates;
    } else if (group.code == 40) {
      vertex.startWidth = group.number;
    } else if (group.code == 41) {
      vertex.endWidth = group.number;
    } else if (group.code == 42) {
      vertex.bulge = group.number;
    }
  }
  if (ordinates != polyline.vertices.size()) {
    throw DxfFault{object.place, "LWPOLYLINE has vertices with only one coordinate"};
  }
  object.CheckCount(object.Find(90), polyline.vertices.size());
  return ProjectPolyline(PlaneOf(object), std::move(polyline), object.Real(38, 0));
}

PolylineBuilder::PolylineBuilder(const DxfObject& polyline)
    : flags_(polyline.Flags(70)), place_(polyline.place), faults_(polyline.faults) {
  outline_.closed = Has(kClosed);
  outline_.continuousPattern = Has(kContinuousPattern);
  const bool isSmooth = Has(kSplineFit);  // a smooth mesh has counts of its own
  countM_ = polyline.Integer(isSmooth ? 73 : 71, 0);
  countN_ = polyline.Integer(isSmooth ? 74 : 72, 0);
  if (Has(kInSpace | kMesh | kPolyface)) return;  // in world coordinates, without widths
  plane_ = PlaneOf(polyline);
  elevation_ = polyline.Real(30, 0);
  startWidth_ = polyline.Real(40, 0);
  endWidth_ = polyline.Real(41, 0);
}

void PolylineBuilder::AddVertex(const DxfObject& vertex) {
  const uint64_t flags = vertex.Flags(70);
  if ((flags & kFrame) != 0) return;
  if (Has(kPolyface) && (flags & kFaceOrCorner) != 0 && (flags & kMeshVertex) == 0) {
    Face face;
    for (int corner = 0; corner < 4; ++corner) {
      face.corners[static_cast<size_t>(corner)] = vertex.Integer(71 + corner, 0);
    }
    face.place = vertex.place;
    faces_.push_back(face);
    return;
  }
  PolyVertex added{vertex.NeededPoint(10)};
  if (!Has(kInSpace | kMesh | kPolyface)) {
    added.bulge = vertex.Real(42, 0);
    added.startWidth = vertex.Real(40, startWidth_);
    added.endWidth = vertex.Real(41, endWidth_);
  }
  outline_.vertices.push_back(added);
}

Shape PolylineBuilder::Finish() const {
  if (Has(kPolyface)) return Polyface();
  if (Has(kMesh)) return MeshGrid();
  return ProjectPolyline(plane_, outline_, elevation_);
}

Shape PolylineBuilder::MeshGrid() const {
  const auto countM = static_cast<size_t>(countM_);
  const auto countN = static_cast<size_t>(countN_);
  const size_t vertices = outline_.vertices.size();
  if (countM < 2 || countN < 2 || countM > vertices || countN > vertices || countM * countN != vertices) {
    throw DxfFault{place_, fmt::format("a mesh of {} by {} vertices has {}", countM_, countN_, vertices)};
  }
  MeshEntity mesh;
  const auto point = [&](size_t m, size_t n) { return outline_.vertices[m * countN + n].point; };
  for (size_t m = 0; m < countM; ++m) {
    std::vector<Vec2>& edge = mesh.edges.emplace_back();
    for (size_t n = 0; n < countN; ++n) edge.push_back(point(m, n));
    if (Has(kClosedN)) edge.push_back(point(m, 0));
  }
  for (size_t n = 0; n < countN; ++n) {
    std::vector<Vec2>& edge = mesh.edges.emplace_back();
    for (size_t m = 0; m < countM; ++m) edge.push_back(point(m, n));
    if (Has(kClosed)) edge.push_back(point(0, n));
  }
  return mesh;
}

Shape PolylineBuilder::Polyface() const {
  MeshEntity mesh;
  std::set<EdgeKey> drawn;
  const auto vertices = static_cast<int64_t>(outline_.vertices.size());
  for (const Face& face : faces_) {
    size_t corners = 0;
    while (corners < 4 && face.corners[corners] != 0) ++corners;
    for (size_t i = 0; i < corners; ++i) {
      const int64_t from = std::abs(face.corners[i]);
      const int64_t to = std::abs(face.corners[(i + 1) % corners]);
      if (from > vertices || to > vertices) {
        faults_.Report({face.place, fmt::format("a face has the corner {}, but the mesh has {} vertices",
                                                std::max(from, to), vertices)});
        break;
      }
      const bool hidden = face.corners[i] < 0;
      if (hidden || from == to || !drawn.insert(std::minmax(from, to)).second) continue;
      mesh.edges.push_back({outline_.vertices[static_cast<size_t>(from - 1)].point,
                            outline_.vertices[static_cast<size_t>(to - 1)].point});
    }
  }
  return mesh;
}

}  // namespace hdiplot
