// From the host's pixels to the planes of an image: palettes taken apart, opacities worked into the alpha.
//
// A pixel's fourth byte is its alpha, in a palette as in a raster of 32 bits: an entry with 0 there is
// transparent.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace hdi {

// The bytes of a picture, in rows without gaps. The memory is never cleared: rasters can be large.
class Plane {
 public:
  // Throws std::bad_alloc, for a size below 0 too.
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

// The fourth bytes of a raster of 32 bits a pixel under an opacity.
[[nodiscard]] Plane AlphaPlane(const uint8_t* bits, int32_t width, int32_t height, uint8_t opacity);

// The pixels of a raster of 8 bits or of 1 under its palette and an opacity. A palette's entries are blue,
// green, red, alpha; only those that occur in the raster are read.
[[nodiscard]] ColorPlanes ExpandBytes(const uint8_t* bits, const uint8_t* palette, int32_t width,
                                      int32_t height, uint8_t opacity);
[[nodiscard]] ColorPlanes ExpandBits(const uint8_t* bits, const uint8_t* palette, int32_t width,
                                     int32_t height, uint8_t opacity);

// How a raster of one bit a pixel is told: opaque black and white stay one bit, either as they are or
// complemented; anything else is expanded.
enum class BitPalette : uint8_t { kBlackAndWhite, kWhiteAndBlack, kOther };
[[nodiscard]] BitPalette KindOfBitPalette(const uint8_t* palette, uint8_t opacity);

}  // namespace hdi
