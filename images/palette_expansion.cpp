// Opacities are looked up in a table of the 256 scaled alphas, since rasters have far more pixels than that.
#include "images/palette_expansion.h"

#include <algorithm>
#include <array>
#include <new>

#include "images/raster_rows.h"

namespace hdi {
namespace {

constexpr size_t kEntryLength = 4;

using AlphaTable = std::array<uint8_t, 256>;

AlphaTable ScaledAlphas(uint8_t opacity) {
  const double factor = opacity / 255.0;
  AlphaTable table{};
  for (size_t alpha = 0; alpha < table.size(); ++alpha) {
    table[alpha] = static_cast<uint8_t>(static_cast<double>(alpha) * factor + 0.5);
  }
  return table;
}

size_t PlaneSize(int32_t width, int32_t height, size_t bytesPerPixel) {
  if (width < 0 || height < 0) throw std::bad_alloc();
  return static_cast<size_t>(width) * static_cast<size_t>(height) * bytesPerPixel;
}

// `indexOf(row, x)` returns the palette index of a pixel.
template <uint32_t bitsPerPixel, typename IndexOf>
ColorPlanes Expand(const uint8_t* bits, const uint8_t* palette, int32_t width, int32_t height,
                   uint8_t opacity, IndexOf indexOf) {
  ColorPlanes planes{{width, height, 3}, {width, height, 1}};
  const AlphaTable alphas = ScaledAlphas(opacity);
  const size_t rowLength = RowLength(width, bitsPerPixel);
  uint8_t* rgb = planes.rgb.Data();
  uint8_t* alpha = planes.alpha.Data();
  for (int32_t y = 0; y < height; ++y, bits += rowLength) {
    for (size_t x = 0; x < static_cast<size_t>(width); ++x) {
      const uint8_t* entry = palette + kEntryLength * indexOf(bits, x);
      *rgb++ = entry[2];
      *rgb++ = entry[1];
      *rgb++ = entry[0];
      *alpha++ = alphas[entry[3]];
    }
  }
  return planes;
}

}  // namespace

Plane::Plane(int32_t width, int32_t height, size_t bytesPerPixel)
    : size_(PlaneSize(width, height, bytesPerPixel)),
      bytes_(std::make_unique_for_overwrite<uint8_t[]>(size_)) {}

Plane AlphaPlane(const uint8_t* bits, int32_t width, int32_t height, uint8_t opacity) {
  Plane plane(width, height, 1);
  const AlphaTable alphas = ScaledAlphas(opacity);
  // Rows of 32-bit pixels have no padding.
  uint8_t* alpha = plane.Data();
  for (size_t pixel = 0; pixel < plane.Bytes().size(); ++pixel) alpha[pixel] = alphas[bits[4 * pixel + 3]];
  return plane;
}

ColorPlanes ExpandBytes(const uint8_t* bits, const uint8_t* palette, int32_t width, int32_t height,
                        uint8_t opacity) {
  return Expand<8>(bits, palette, width, height, opacity,
                   [](const uint8_t* row, size_t x) -> size_t { return row[x]; });
}

ColorPlanes ExpandBits(const uint8_t* bits, const uint8_t* palette, int32_t width, int32_t height,
                       uint8_t opacity) {
  return Expand<1>(bits, palette, width, height, opacity,
                   [](const uint8_t* row, size_t x) -> size_t { return row[x / 8] >> (7 - x % 8) & 1; });
}

BitPalette KindOfBitPalette(const uint8_t* palette, uint8_t opacity) {
  constexpr std::array<uint8_t, 2 * kEntryLength> kBlackWhite = {0, 0, 0, 255, 255, 255, 255, 255};
  constexpr std::array<uint8_t, 2 * kEntryLength> kWhiteBlack = {255, 255, 255, 255, 0, 0, 0, 255};
  if (opacity != 255) return BitPalette::kOther;
  if (std::equal(kBlackWhite.begin(), kBlackWhite.end(), palette)) return BitPalette::kBlackAndWhite;
  if (std::equal(kWhiteBlack.begin(), kWhiteBlack.end(), palette)) return BitPalette::kWhiteAndBlack;
  return BitPalette::kOther;
}

}  // namespace hdi
