// Converts the host's pixels to image planes: expands palettes and multiplies the alpha by an opacity.
//
// The fourth byte of a pixel or palette entry is its alpha: 0 is transparent.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace hdi {

// The samples of an image in rows without padding. The memory is not cleared: rasters can be large.
class Plane {
 public:
  // Throws std::bad_alloc, also for a negative size.
  Plane(int32_t width, int32_t height, size_t bytesPerPixel);

  [[nodiscard]] uint8_t* Data() { return bytes_.get(); }
  [[nodiscard]] std::span<const uint8_t> Bytes() const { return {bytes_.get(), size_}; }

 private:
  size_t size_;
  std::unique_ptr<uint8_t[]> bytes_;
};

struct ColorPlanes {
  Plane rgb;  // red, green, blue
  Plane alpha;
};

// Returns the alpha bytes of a 32-bit raster, scaled by an opacity.
[[nodiscard]] Plane AlphaPlane(const uint8_t* bits, int32_t width, int32_t height, uint8_t opacity);

// Expand an 8-bit or 1-bit raster through its palette and scale the alpha by an opacity. Palette entries are
// blue, green, red, alpha; only entries that the raster uses are read.
[[nodiscard]] ColorPlanes ExpandBytes(const uint8_t* bits, const uint8_t* palette, int32_t width,
                                      int32_t height, uint8_t opacity);
[[nodiscard]] ColorPlanes ExpandBits(const uint8_t* bits, const uint8_t* palette, int32_t width,
                                     int32_t height, uint8_t opacity);

// How a 1-bit raster is stored: opaque black and white stay one bit, as they are or complemented; anything
// else is expanded.
enum class BitPalette : uint8_t { kBlackAndWhite, kWhiteAndBlack, kOther };
[[nodiscard]] BitPalette KindOfBitPalette(const uint8_t* palette, uint8_t opacity);

}  // namespace hdi
