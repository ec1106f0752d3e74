// LWPOLYLINE, and POLYLINE, whose vertices follow it as objects up to SEQEND. It is a line in a plane or in
// space, a polygon mesh of M by N vertices, or a polyface mesh, whose last vertices are faces.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "hdiplot/dxf/dxf_object.h"
#include "hdiplot/geometry/ocs.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

// Throws DxfFault.
[[nodiscard]] PolylineEntity ReadLwPolyline(const DxfObject& object);

// All operations throw DxfFault.
class PolylineBuilder {
 public:
  explicit PolylineBuilder(const DxfObject& polyline);

  void AddVertex(const DxfObject& vertex);

  // The shape of the vertices so far.
  Shape Finish() const;

  // Of the POLYLINE, as in DxfFault.
  size_t Place() const { return place_; }

 private:
  struct Face {
    // Numbers of vertices from 1. Negative: the edge to the next corner is hidden. 0: no corner.
    std::array<int64_t, 4> corners{};
    size_t place = 0;
  };

  bool Has(uint64_t flag) const { return (flags_ & flag) != 0; }
  Shape MeshGrid() const;
  Shape Polyface() const;

  uint64_t flags_;
  int64_t countM_ = 0;
  int64_t countN_ = 0;
  Ocs plane_;
  double elevation_ = 0;
  double startWidth_ = 0;
  double endWidth_ = 0;
  size_t place_ = 0;
  FaultLog& faults_;
  PolylineEntity outline_;
  std::vector<Face> faces_;
};

}  // namespace hdiplot
