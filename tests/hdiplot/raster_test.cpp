// The raster object as the driver meets it.
#include "host/hdiplot/raster.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <vector>

// Uses FILE without declaring it.
// clang-format off
#include <cstdio>
#include <jpeglib.h>
// clang-format on

namespace hdiplot {
namespace {

struct Decoded {
  unsigned width = 0;
  unsigned height = 0;
  std::vector<uint8_t> rows;  // red, green, blue
};

Decoded Decode(const uint8_t* data, uint64_t size) {
  jpeg_decompress_struct state{};
  jpeg_error_mgr errors{};
  state.err = jpeg_std_error(&errors);
  jpeg_create_decompress(&state);
  jpeg_mem_src(&state, data, static_cast<unsigned long>(size));
  jpeg_read_header(&state, TRUE);
  jpeg_start_decompress(&state);
  Decoded decoded{state.output_width, state.output_height, {}};
  const size_t rowBytes = size_t{3} * decoded.width;
  decoded.rows.resize(rowBytes * decoded.height);
  while (state.output_scanline < state.output_height) {
    JSAMPROW row = decoded.rows.data() + rowBytes * state.output_scanline;
    jpeg_read_scanlines(&state, &row, 1);
  }
  jpeg_finish_decompress(&state);
  jpeg_destroy_decompress(&state);
  return decoded;
}

// 16 by 16 pixels, the upper half in memory red and the lower half blue; the fourth byte is noise.
ImageData RedOverBlue(int32_t bitCount) {
  ImageData image;
  image.width = 16;
  image.height = -16;
  image.bitCount = bitCount;
  for (int i = 0; i < 256; ++i) {
    const bool isUpper = i < 128;
    const uint8_t pixel[] = {uint8_t(isUpper ? 0 : 255), 0, uint8_t(isUpper ? 255 : 0), uint8_t(i)};
    image.pixels.insert(image.pixels.end(), pixel, pixel + bitCount / 8);
  }
  return image;
}

TEST(Raster, EncodesItsColorsInMemoryOrder) {
  for (const int32_t bitCount : {24, 32}) {
    Raster raster(RedOverBlue(bitCount));
    uint64_t size = 0;
    uint8_t* data = raster.EncodeToMemory("jpeg", 50, &size);
    ASSERT_NE(data, nullptr);
    const Decoded decoded = Decode(data, size);
    raster.FreeEncoded(data);
    ASSERT_EQ(decoded.width, 16U);
    ASSERT_EQ(decoded.height, 16U);
    const uint8_t* first = decoded.rows.data();
    const uint8_t* last = &decoded.rows.back() - 2;
    EXPECT_NEAR(first[0], 255, 20);
    EXPECT_NEAR(first[2], 0, 20);
    EXPECT_NEAR(last[0], 0, 20);
    EXPECT_NEAR(last[2], 255, 20);
  }
}

TEST(Raster, EncodesNothingThatItCannot) {
  uint64_t size = 0;
  EXPECT_EQ(Raster(RedOverBlue(32)).EncodeToMemory("png", 50, &size), nullptr);
  ImageData empty;
  empty.bitCount = 32;
  EXPECT_EQ(Raster(empty).EncodeToMemory("jpeg", 50, &size), nullptr);
  ImageData wide;
  wide.width = 70000;
  wide.height = 1;
  wide.bitCount = 24;
  wide.pixels.resize(210000);
  EXPECT_EQ(Raster(wide).EncodeToMemory("jpeg", 50, &size), nullptr);
}

}  // namespace
}  // namespace hdiplot
