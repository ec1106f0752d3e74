// The values of dimensions as texts of an MTEXT, in the units of their style.
#pragma once

#include <string>

#include "hdiplot/dxf/dimension_style.h"

namespace hdiplot {

// `length` is in drawing units; `mark`, such as a diameter's, stands before the value.
[[nodiscard]] std::string LengthText(double length, const std::string& mark, const DimensionStyle& style);
[[nodiscard]] std::string AngleText(double radians, const DimensionStyle& style);

}  // namespace hdiplot
