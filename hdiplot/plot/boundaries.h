// Outlines of shapes as rings.
#pragma once

#include <vector>

#include "hdiplot/geometry/clipping.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

// The hatch's loops, curves within `tolerance` (drawing units). An edge that is written in the opposite
// direction to its neighbours is reversed. Loops without an area are left out. With text boxes the rings are
// those of the area that the others enclose by the even-odd rule, without the boxes.
[[nodiscard]] std::vector<Ring> BoundaryRings(const HatchEntity& hatch, double tolerance);

// The corners of the whole image, unclipped.
[[nodiscard]] Ring FrameOf(const ImageEntity& image);

// The corners of the viewport's rectangle on the layout.
[[nodiscard]] Ring FrameOf(const ViewportEntity& viewport);

}  // namespace hdiplot
