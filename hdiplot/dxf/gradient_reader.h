// The gradient of a HATCH, which stands behind its boundary.
#pragma once

#include <optional>

#include "hdiplot/dxf/dxf_object.h"
#include "hdiplot/geometry/ocs.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

// Of a hatch in `plane` that says that it has one. A name that is not known makes it linear. None when it has
// no colours.
std::optional<HatchGradient> ReadGradient(const DxfObject& hatch, const Ocs& plane);

}  // namespace hdiplot
