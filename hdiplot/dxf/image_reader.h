// The raster images of a DXF: IMAGE and WIPEOUT, and the IMAGEDEF objects that tell the images' files.
#pragma once

#include "hdiplot/dxf/dxf_object.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

// The key in Drawing::imageFiles of what is named by handle.
[[nodiscard]] std::string ImageKey(const Group& handle);

// Throws DxfFault for an object that makes no sense, as the next.
[[nodiscard]] Shape ReadImage(const DxfObject& object);

// All of its frame where it has no polygon.
[[nodiscard]] Shape ReadWipeout(const DxfObject& object);

}  // namespace hdiplot
