// The many forms that the Windows Imaging Component gives pixels in, as the three of a raster.
#pragma once

#include <cstdint>
#include <optional>

#include "hdiplot/device/raster.h"
#include "hdiplot/image/windows/wic.h"

namespace hdiplot {

// Bits a pixel of the form that the image has.
[[nodiscard]] uint64_t BitsOf(IWICImagingFactory& factory, IWICBitmapSource& source);

// As ImageDecoder::Decode returns it.
[[nodiscard]] std::optional<ImageData> ReadPixels(IWICImagingFactory& factory, IWICBitmapSource& source);

}  // namespace hdiplot
