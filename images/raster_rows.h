// Memory layout of the host's rasters. Rows are stored in display order whatever the sign of the height, each
// padded to whole 32-bit words.
#pragma once

#include <cstddef>
#include <cstdint>

namespace hdi {

// Bytes from one row to the next; `width` is in pixels and not negative.
[[nodiscard]] constexpr size_t RowLength(int32_t width, uint32_t bitsPerPixel) {
  return (static_cast<size_t>(width) * bitsPerPixel + 31) / 32 * 4;
}

// Bytes of a 1-bit row that hold pixels.
[[nodiscard]] constexpr size_t BitRowBytes(int32_t width) { return (static_cast<size_t>(width) + 7) / 8; }

// The number of rows of a raster of this height, whose sign does not matter. INT32_MIN, which has no positive
// counterpart, stays negative.
[[nodiscard]] constexpr int32_t RowCount(int32_t height) {
  return height < 0 && height != INT32_MIN ? -height : height;
}

}  // namespace hdi
