// The raster images of a DXF: IMAGE, whose files are in IMAGEDEF objects, and WIPEOUT.
#pragma once

#include "hdiplot/dxf/dxf_object.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

// Throw DxfFault for an object that is incomplete.
[[nodiscard]] ImageEntity ReadImage(const DxfObject& object);
[[nodiscard]] WipeoutEntity ReadWipeout(const DxfObject& object);  // without a polygon: the whole frame

}  // namespace hdiplot
