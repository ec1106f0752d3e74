// How the pixels of the host's rasters lie in memory. Rows stand in memory as they show, whatever the sign of
// the raster's height, each filled up to whole 32-bit words.
#pragma once

#include <cstddef>
#include <cstdint>

namespace hdi {

// Bytes from one row to the next; `width` is in pixels, 0 or above.
[[nodiscard]] constexpr size_t RowLength(int32_t width, uint32_t bitsPerPixel) {
  return (static_cast<size_t>(width) * bitsPerPixel + 31) / 32 * 4;
}

// Bytes of a row of one bit a pixel that hold pixels.
[[nodiscard]] constexpr size_t BitRowBytes(int32_t width) { return (static_cast<size_t>(width) + 7) / 8; }

// The row count of a raster from its height in pixels, whose sign doesn't matter; it stays below 0 for the
// one height that has no positive counterpart.
[[nodiscard]] constexpr int32_t RowCount(int32_t height) {
  return height < 0 && height != INT32_MIN ? -height : height;
}

}  // namespace hdi
