// The raster object as the driver uses it.
#include "hdiplot/device/raster.h"

#include <gtest/gtest.h>

#include "hdiplot/image/image_file.h"
#include "tests/support/scratch.h"

namespace hdiplot {
namespace {

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
  const scratch::Directory directory;
  for (const int32_t bitCount : {24, 32}) {
    Raster raster(RedOverBlue(bitCount));
    uint64_t size = 0;
    uint8_t* data = raster.EncodeToMemory("jpeg", 50, &size);
    ASSERT_NE(data, nullptr);
    const ImageData decoded = ReadImageFile(directory.Write("a.jpg", {data, data + size})).image;
    raster.FreeEncoded(data);
    ASSERT_EQ(decoded.pixels.size(), 16U * 16 * 4);
    const uint8_t* first = decoded.pixels.data();
    const uint8_t* last = &decoded.pixels.back() - 3;
    EXPECT_NEAR(first[0], 0, 20);
    EXPECT_NEAR(first[2], 255, 20);
    EXPECT_NEAR(last[0], 255, 20);
    EXPECT_NEAR(last[2], 0, 20);
  }
}

TEST(Raster, EncodesNothingThatItCannot) {
  uint64_t size = 0;
  EXPECT_EQ(Raster(RedOverBlue(32)).EncodeToMemory("png", 50, &size), nullptr);
  EXPECT_EQ(Raster(RedOverBlue(8)).EncodeToMemory("jpeg", 50, &size), nullptr);
  for (const auto& [width, height] : {std::pair{0, 1}, {1, 0}, {70000, 1}, {1, -70000}}) {
    ImageData image = RedOverBlue(24);
    image.width = width;
    image.height = height;
    image.pixels.resize(280000);
    EXPECT_EQ(Raster(image).EncodeToMemory("jpeg", 50, &size), nullptr) << width << "x" << height;
  }
}

}  // namespace
}  // namespace hdiplot
