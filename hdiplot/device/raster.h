// Images in memory, and the host's raster object that DevBitmap takes.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/border.h"

namespace hdiplot {

// An image in memory, with its keys in a plot trace; calls.h explains Describe and Problem.
struct ImageData {
  int32_t width = 0;
  int32_t height = 0;    // may be negative; the rows' order in memory is the same
  int32_t bitCount = 0;  // 1, 8, 24 or 32
  bool hasAlpha = false;
  std::vector<std::array<uint8_t, 4>> palette;  // blue, green, red, fourth
  std::vector<uint8_t> pixels;                  // rows of RowBytes() bytes, as they lie in memory
  bool operator==(const ImageData&) const = default;

  static void Describe(auto& self, auto& keys) {
    keys("width", self.width)("height", self.height)("bitCount", self.bitCount);
    keys.Optional("hasAlpha", self.hasAlpha).Optional("palette", self.palette)("pixels", self.pixels);
  }
  // Empty when Raster can hold the image.
  [[nodiscard]] std::string Problem() const;
};

// The length of a row of pixels, padded to whole 32-bit words.
[[nodiscard]] uint64_t RowBytes(int32_t width, int32_t bitCount);

// Owns its pixels. Must live until DevEndDoc has returned, where the driver reads them.
class Raster final : public hdi::RasterImage {
 public:
  // `image` has no Problem().
  explicit Raster(ImageData image);
  Raster(const Raster&) = delete;
  Raster& operator=(const Raster&) = delete;
  virtual ~Raster() = default;  // after the border's slots

  const hdi::BITMAPINFOHEADER* GetImageHeader() override { return &block_.header; }
  int32_t GetPixelWidth() override { return block_.header.biWidth; }
  int32_t GetPixelHeight() override { return block_.header.biHeight; }
  int32_t HasAlphaChannel() override { return hasAlpha_ ? 1 : 0; }
  uint8_t* GetPixelBits() override { return pixels_.data(); }
  // The format must be "jpeg" and the raster have 24 or 32 bits, of which the fourth byte is left out. Null
  // on failure.
  uint8_t* EncodeToMemory(const char* format, int32_t quality, uint64_t* size) override;
  void FreeEncoded(uint8_t* data) override;

 private:
  // The palette follows the header directly and always has all 256 entries: pixels index it without a check.
  struct HeaderAndPalette {
    hdi::BITMAPINFOHEADER header;
    std::array<std::array<uint8_t, 4>, 256> palette;
  };
  static_assert(offsetof(HeaderAndPalette, palette) == sizeof(hdi::BITMAPINFOHEADER));

  HeaderAndPalette block_{};
  bool hasAlpha_;
  std::vector<uint8_t> pixels_;
};

// A copy of any raster, as a trace holds it.
[[nodiscard]] ImageData DescribeRaster(hdi::RasterImage& raster);

}  // namespace hdiplot
