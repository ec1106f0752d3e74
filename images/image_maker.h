// Makes images of the document from the host's indexed rasters.
#pragma once

#include <cstdint>

#include "engine/document.h"
#include "platform/records.h"

namespace hdi {

// Returns whether this is a raster of 1 or 8 bits a pixel. For any other no image object is placed, not even
// an empty one.
[[nodiscard]] bool IsIndexedRaster(const uint8_t* bits, const BITMAPINFOHEADER* header);

// Adds the image of such a raster, whose palette follows `header` in memory. Returns the object number of the
// image stream, or 0 for a raster without extent or of 4 GiB or more; its image object is then written
// without pixels. Throws std::bad_alloc, also for a negative size of a raster whose palette has to be
// expanded.
[[nodiscard]] uint32_t MakeIndexedImage(engine::Document& document, const uint8_t* bits,
                                        const BITMAPINFOHEADER& header, uint8_t opacity);

}  // namespace hdi
