// From the host's rasters to images of the document.
#pragma once

#include <cstdint>

#include "engine/document.h"
#include "platform/records.h"

namespace hdi {

// Whether that is a raster of 8 bits or 1 bit a pixel. Of anything else not even an empty image is placed.
[[nodiscard]] bool IsIndexedRaster(const uint8_t* bits, const BITMAPINFOHEADER* header);

// Makes the image of such a raster; in memory its palette stands right behind `header`. The object number of
// the image's stream, 0 for a raster without an extent or of 4 GiB, whose object goes on without pixels.
// Throws std::bad_alloc, also for a size below 0 of a raster whose palette has to be expanded.
[[nodiscard]] uint32_t MakeIndexedImage(engine::Document& document, const uint8_t* bits,
                                        const BITMAPINFOHEADER& header, uint8_t opacity);

}  // namespace hdi
