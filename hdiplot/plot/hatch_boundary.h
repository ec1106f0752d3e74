// The boundary of a hatch as polygons.
#pragma once

#include <vector>

#include "hdiplot/geometry/transform.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

using Ring = std::vector<Vec2>;  // closed from its last point to its first

// The hatch's loops, curves within `tolerance` (drawing units). An edge that was written the other way round
// than its neighbours is turned. Loops without an area are left out.
[[nodiscard]] std::vector<Ring> BoundaryRings(const HatchEntity& hatch, double tolerance);

}  // namespace hdiplot
