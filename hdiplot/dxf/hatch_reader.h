// HATCH, with its gradient. The meaning of its groups depends on their order.
#pragma once

#include "hdiplot/dxf/dxf_object.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

// Throws DxfFault if something is missing. Wrong counts are reported and ignored.
[[nodiscard]] HatchEntity ReadHatch(const DxfObject& object);

}  // namespace hdiplot
