// The host's raster object: what DevBitmap takes, made from an image in memory.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "platform/border.h"

namespace hdiplot {

// An image as a plot trace holds it.
struct ImageData {
  int32_t width = 0;
  int32_t height = 0;    // may be negative; the rows' order in memory is the same
  int32_t bitCount = 0;  // 1, 8, 24 or 32
  bool hasAlpha = false;
  std::vector<std::array<uint8_t, 4>> palette;  // blue, green, red, fourth
  std::vector<uint8_t> pixels;                  // rows of RowBytes() bytes, as they lie in memory
  bool operator==(const ImageData&) const = default;

  // The keys in a trace; see trace.h.
  template <typename Self, typename Keys>
  static void Describe(Self& self, Keys& keys) {
    keys.Required("width", self.width);
    keys.Required("height", self.height);
    keys.Required("bitCount", self.bitCount);
    keys.Optional("hasAlpha", self.hasAlpha, false);
    keys.Optional("palette", self.palette, decltype(self.palette)());
    keys.Required("pixels", self.pixels);
  }
};

// The length of a row of pixels: whole 32-bit words.
[[nodiscard]] uint64_t RowBytes(int32_t width, int32_t bitCount);

// The raster owns its pixels; it is kept until DevEndDoc has returned.
class Raster final : public hdi::RasterImage {
 public:
  // `image` holds at least RowBytes() bytes for each row and no longer palette than its bit count has values.
  explicit Raster(ImageData image);
  Raster(const Raster&) = delete;
  Raster& operator=(const Raster&) = delete;
  virtual ~Raster() = default;  // behind the border's operations

  const hdi::BITMAPINFOHEADER* GetImageHeader() override { return &block_.header; }
  int32_t GetPixelWidth() override { return block_.header.biWidth; }
  int32_t GetPixelHeight() override { return block_.header.biHeight; }
  int32_t HasAlphaChannel() override { return hasAlpha_ ? 1 : 0; }
  uint8_t* GetPixelBits() override { return pixels_.data(); }
  // Knows the format "jpeg" for rasters of 24 and 32 bits, the fourth byte left out. Null on failure.
  uint8_t* EncodeToMemory(const char* format, int32_t quality, uint64_t* size) override;
  void FreeEncoded(uint8_t* data) override;

 private:
  // The palette stands directly behind the header and always has all its entries, as pixels index it without
  // any test.
  struct HeaderAndPalette {
    hdi::BITMAPINFOHEADER header;
    std::array<std::array<uint8_t, 4>, 256> palette;
  };
  static_assert(offsetof(HeaderAndPalette, palette) == sizeof(hdi::BITMAPINFOHEADER));

  HeaderAndPalette block_{};
  bool hasAlpha_;
  std::vector<uint8_t> pixels_;
};

// What a trace keeps of any raster.
[[nodiscard]] ImageData DescribeRaster(hdi::RasterImage& raster);

}  // namespace hdiplot
