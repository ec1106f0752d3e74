#include "hdiplot/image/pixel_rows.h"

#include <algorithm>
#include <utility>

namespace hdiplot {

namespace {

int Lightness(const PixelColor& color) { return color[0] + color[1] + color[2]; }

}  // namespace

ImageData BlankImage(int32_t width, int32_t height, int32_t bitCount, std::vector<PixelColor> palette) {
  ImageData image;
  image.width = width;
  image.height = height;
  image.bitCount = bitCount;
  image.palette = std::move(palette);
  image.pixels.resize(RowBytes(width, bitCount) * static_cast<size_t>(height));
  const auto lightest = std::ranges::max_element(image.palette, {}, Lightness) - image.palette.begin();
  const auto blank = static_cast<uint8_t>(bitCount == 32 ? 255 : bitCount == 8 ? lightest : lightest * 255);
  const size_t bits = static_cast<size_t>(width) * static_cast<size_t>(bitCount);
  for (int32_t y = 0; y < height && blank != 0; ++y) {
    uint8_t* row = RowOf(image, y);
    std::fill_n(row, bits / 8, blank);
    // Padding bits stay zero.
    if (bits % 8 != 0) row[bits / 8] = static_cast<uint8_t>(0xFF00U >> bits % 8);
  }
  return image;
}

uint8_t* RowOf(ImageData& image, int32_t y) {
  return image.pixels.data() + RowBytes(image.width, image.bitCount) * static_cast<size_t>(y);
}

std::vector<PixelColor> Grays(int32_t bits) {
  std::vector<PixelColor> grays;
  const int last = (1 << bits) - 1;
  for (int i = 0; i <= last; ++i) {
    const auto gray = static_cast<uint8_t>(i * 255 / last);
    grays.push_back({gray, gray, gray, 255});
  }
  return grays;
}

void Unpack(const uint8_t* packed, int32_t bits, int32_t count, uint8_t* numbers) {
  const int perByte = 8 / bits;
  for (int32_t i = 0; i < count; ++i) {
    const int below = 8 - bits * (i % perByte + 1);
    numbers[i] = static_cast<uint8_t>(packed[i / perByte] >> below & ((1 << bits) - 1));
  }
}

PixelColor ColorOfInks(uint8_t cyan, uint8_t magenta, uint8_t yellow, uint8_t black) {
  const auto light = [black](uint8_t ink) { return static_cast<uint8_t>((255 - ink) * (255 - black) / 255); };
  return {light(yellow), light(magenta), light(cyan), 255};
}

void PackTwoColors(ImageData& image) {
  if (image.bitCount != 8 || image.palette.size() != 2) return;
  ImageData packed = BlankImage(image.width, image.height, 1, image.palette);
  std::ranges::fill(packed.pixels, uint8_t{0});
  for (int32_t y = 0; y < image.height; ++y) {
    const uint8_t* numbers = RowOf(image, y);
    uint8_t* row = RowOf(packed, y);
    for (size_t x = 0; x < static_cast<size_t>(image.width); ++x) {
      row[x / 8] |= static_cast<uint8_t>((numbers[x] & 1U) << (7 - x % 8));
    }
  }
  image = std::move(packed);
}

}  // namespace hdiplot
