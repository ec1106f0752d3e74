// The shapes of entities of one object, but for texts, polylines and viewports. HATCH and MPOLYGON,
// whose groups depend on their order, are in hatch_reader.cpp, MESH is in mesh_reader.cpp, IMAGE and WIPEOUT
// are in image_reader.cpp.
#pragma once

#include <cstddef>

#include "hdiplot/dxf/dxf_object.h"
#include "hdiplot/dxf/text_decoder.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

// All of these throw DxfFault for an entity that is incomplete or has no shape. Wrong counts are reported and
// ignored.
[[nodiscard]] PointEntity ReadPoint(const DxfObject& entity);
[[nodiscard]] LineEntity ReadLine(const DxfObject& entity);
[[nodiscard]] Shape ReadCircle(const DxfObject& entity);
[[nodiscard]] Shape ReadArc(const DxfObject& entity);
[[nodiscard]] RayEntity ReadRay(const DxfObject& entity);  // and XLINE
[[nodiscard]] EllipseEntity ReadEllipse(const DxfObject& entity);
[[nodiscard]] SolidEntity ReadSolid(const DxfObject& entity);  // and TRACE
[[nodiscard]] FaceEntity ReadFace(const DxfObject& entity);    // 3DFACE
[[nodiscard]] SplineEntity ReadSpline(const DxfObject& entity);
[[nodiscard]] SplineEntity ReadHelix(const DxfObject& entity);
[[nodiscard]] MeshEntity ReadMesh(
    const DxfObject& entity);  // the edges of a subdivision surface's control mesh
[[nodiscard]] HatchEntity ReadHatch(const DxfObject& entity);
// The boundaries and the fill; neither solid nor with lines when there is none.
[[nodiscard]] HatchEntity ReadMPolygon(const DxfObject& entity);
[[nodiscard]] ImageEntity ReadImage(const DxfObject& entity);
[[nodiscard]] WipeoutEntity ReadWipeout(const DxfObject& entity);
// SHAPE. Without edges if the shape is not known.
[[nodiscard]] MeshEntity ReadSymbol(const DxfObject& entity);
[[nodiscard]] InsertEntity ReadInsert(const DxfObject& entity, NameCache& names);

// Completes a spline of an entity or a hatch at that place: adds missing knots, drops weights that are all
// the same, and fit points if there are control points. Throws DxfFault if degree, counts, knots or weights
// do not fit together, so that evaluation needs no checks.
void CompleteSpline(SplineEntity& spline, size_t place);

}  // namespace hdiplot
