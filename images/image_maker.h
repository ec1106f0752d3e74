// From the host's rasters to images of the document.
#pragma once

#include <cstdint>
#include <optional>

#include "engine/document.h"
#include "platform/records.h"

namespace hdi {

// Makes the image of a raster of 8 bits or 1 bit a pixel; in memory its palette stands right behind `header`.
// The object number of the image's stream, 0 for a raster without an extent or of 4 GiB, whose object goes on
// without pixels. Nothing, and so no object at all, for another bit count or without bits. Throws
// std::bad_alloc, also for a size below 0 of a raster whose palette has to be expanded.
[[nodiscard]] std::optional<uint32_t> MakeIndexedImage(engine::Document& document, const uint8_t* bits,
                                                       const BITMAPINFOHEADER* header, uint8_t opacity);

}  // namespace hdi
