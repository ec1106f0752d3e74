// HATCH, whose groups mean what they do by their order.
#pragma once

#include "host/hdiplot/dxf/drawing.h"
#include "host/hdiplot/dxf/dxf_object.h"

namespace hdiplot {

// Throws DxfFault when something is missing. What is there counts, whatever the counts say.
HatchEntity ReadHatch(const DxfObject& object);

}  // namespace hdiplot
