// Splines of a DXF, as entities and as edges of hatches: are they whole?
#pragma once

#include <cstddef>

#include "hdiplot/model/drawing.h"

namespace hdiplot {

// Makes knots where there are none, drops weights that are all the same, and fit points where control points
// say the same. Throws DxfFault at the place if degree, counts, knots or weights do not go together, so that
// whoever evaluates the spline needs no checks.
void CompleteSpline(SplineEntity& spline, size_t place);

}  // namespace hdiplot
