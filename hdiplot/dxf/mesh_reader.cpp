// MESH: the vertices (92, points 10), the faces (93 numbers in groups 90: for each face its number of corners
// and their vertices) and the edges (94) and creases (95), which are not needed.
#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <span>
#include <utility>
#include <vector>

#include "hdiplot/dxf/shape_reader.h"

namespace hdiplot {
namespace {

std::vector<int64_t> FaceList(const DxfObject& object) {
  auto at = std::ranges::find(object.groups, 93, &Group::code);
  if (at == object.groups.end()) throw DxfFault{object.place, "MESH has no faces"};
  const Group& count = *at;
  std::vector<int64_t> list;
  while (++at != object.groups.end() && at->code == 90) list.push_back(at->Integer());
  object.CheckCount(&count, list.size());
  return list;
}

}  // namespace

MeshEntity ReadMesh(const DxfObject& object) {
  const std::vector<Vec2> vertices = object.Points(10);
  const std::vector<int64_t> list = FaceList(object);
  const auto isVertex = [&vertices](int64_t index) {
    return index >= 0 && index < static_cast<int64_t>(vertices.size());
  };
  MeshEntity mesh;
  std::set<std::pair<int64_t, int64_t>> drawn;  // neighbouring faces share an edge
  for (std::span<const int64_t> left = list; !left.empty();) {
    const int64_t corners = left.front();
    left = left.subspan(1);
    if (corners < 0 || corners > static_cast<int64_t>(left.size())) {
      throw DxfFault{object.place, fmt::format("a face of the MESH has {} corners", corners)};
    }
    const auto face = left.first(static_cast<size_t>(corners));
    left = left.subspan(face.size());
    if (!std::ranges::all_of(face, isVertex)) {
      throw DxfFault{object.place, "a face of the MESH has a corner that is no vertex"};
    }
    for (size_t i = 0; i < face.size(); ++i) {
      const int64_t from = face[i];
      const int64_t to = face[(i + 1) % face.size()];
      if (from == to || !drawn.insert(std::minmax(from, to)).second) continue;
      mesh.edges.push_back({vertices[static_cast<size_t>(from)], vertices[static_cast<size_t>(to)]});
    }
  }
  return mesh;
}

}  // namespace hdiplot
