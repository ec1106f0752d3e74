// The plane that an object is drawn in, and the shapes that arcs and polylines of it become in the drawing.
#pragma once

#include "hdiplot/dxf/dxf_object.h"
#include "hdiplot/geometry/curves.h"
#include "hdiplot/geometry/ocs.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

// From groups 210, 220 and 230.
Ocs PlaneOf(const DxfObject& object);

// A circular arc from one angle to the other, in either direction: an end below the start is clockwise. An
// arc of a mirrored plane changes its direction.
HatchEdge ProjectArc(const Ocs& plane, Vec2 center, double elevation, double radius, Sweep sweep);

// An arc that runs counter-clockwise before and after.
Shape ProjectArcEntity(const Ocs& plane, Vec2 center, double elevation, double radius, Sweep sweep);

// Bulges change their sign in a mirrored plane, and become chords in a tilted one.
PolylineEntity ProjectPolyline(const Ocs& plane, PolylineEntity polyline, double elevation);

// The circle through three points. Without a radius when they are in a line.
ArcEntity CircleThrough(Vec2 a, Vec2 b, Vec2 c);

}  // namespace hdiplot
