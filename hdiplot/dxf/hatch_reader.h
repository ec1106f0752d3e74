// HATCH, whose groups mean what they do by their order.
#pragma once

#include "hdiplot/dxf/dxf_object.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

// Throws DxfFault when something is missing. What is there counts, whatever the counts say.
HatchEntity ReadHatch(const DxfObject& object);

}  // namespace hdiplot
