// The shapes of the line types that CAD programs bring along, such as zigzags and fences.
#pragma once

#include <string_view>
#include <vector>

#include "hdiplot/geometry/points.h"

namespace hdiplot {

// Polylines in units of the shape, from its origin. Empty for an unknown shape.
using ShapeStrokes = std::vector<std::vector<Vec2>>;

// By the number in their file.
[[nodiscard]] ShapeStrokes StandardShape(int number);

// By the name in upper case.
[[nodiscard]] ShapeStrokes StandardShape(std::string_view name);

}  // namespace hdiplot
