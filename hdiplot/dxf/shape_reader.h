// Entities of one object whose groups can be in any order: lines, arcs, splines and the like, LEADER and
// INSERT.
#pragma once

#include <cstddef>

#include "hdiplot/dxf/dxf_object.h"
#include "hdiplot/dxf/name_cache.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

// All of these throw DxfFault for an entity that has no shape.
[[nodiscard]] PointEntity ReadPoint(const DxfObject& entity);
[[nodiscard]] LineEntity ReadLine(const DxfObject& entity);
[[nodiscard]] Shape ReadCircle(const DxfObject& entity);
[[nodiscard]] Shape ReadArc(const DxfObject& entity);
[[nodiscard]] EllipseEntity ReadEllipse(const DxfObject& entity);
[[nodiscard]] SolidEntity ReadSolid(const DxfObject& entity);  // and TRACE
[[nodiscard]] FaceEntity ReadFace(const DxfObject& entity);    // 3DFACE
[[nodiscard]] SplineEntity ReadSpline(const DxfObject& entity);
[[nodiscard]] Shape ReadLeader(const DxfObject& entity);
[[nodiscard]] InsertEntity ReadInsert(const DxfObject& entity, NameCache& names);

// Completes a spline of an entity or a hatch at that place: adds missing knots, drops weights that are all
// the same, and fit points if there are control points. Throws DxfFault if degree, counts, knots or weights
// do not fit together, so that evaluation needs no checks.
void CompleteSpline(SplineEntity& spline, size_t place);

}  // namespace hdiplot
