// Encoding PNG files in memory: the library's own writing to a file would not report a full disk.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace hdiplot {

// Three bytes a pixel: blue, green and red. The upper row comes first, and rows are `stride` bytes apart.
struct BgrPixels {
  int32_t width = 0;
  int32_t height = 0;
  int32_t stride = 0;
  std::span<const uint8_t> bytes;
};

// Throws std::bad_alloc; nothing else can fail.
[[nodiscard]] std::vector<uint8_t> EncodePng(const BgrPixels& pixels, int dotsPerInch);

}  // namespace hdiplot
