// HATCH, read from its groups: their meaning depends on their order, counts say how many of what follow, and
// dxflib neither checks them nor passes on pattern lines.
#pragma once

#include "host/hdiplot/dxf/drawing.h"
#include "host/hdiplot/dxf/dxf_object.h"

namespace hdiplot {

// Throws DxfFault when something is missing or the counts do not match.
HatchEntity ReadHatch(const DxfObject& object);

}  // namespace hdiplot
