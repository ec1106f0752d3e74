// Rasters, compared with the pixels of the saved images.
#include "images/image_maker.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <new>

#include "engine/library.h"
#include "images/palette_expansion.h"
#include "tests/support/saved_document.h"

namespace hdi {
namespace {

using Bytes = std::vector<uint8_t>;

const Bytes kBlackWhite = {0, 0, 0, 255, 255, 255, 255, 255};
const Bytes kWhiteBlack = {255, 255, 255, 255, 0, 0, 0, 255};

std::string Text(const Bytes& bytes) { return {bytes.begin(), bytes.end()}; }

class ImageMakerTest : public testing::Test {
 protected:
  uint32_t Make(int32_t width, int32_t height, int bitCount, const Bytes& palette, const Bytes& bits,
                uint8_t opacity = 255) {
    BITMAPINFOHEADER header{};
    header.biWidth = width;
    header.biHeight = height;
    header.biBitCount = static_cast<uint16_t>(bitCount);
    header.biClrUsed = 1;  // never read
    // Both blocks are exactly sized, so that a sanitizer detects reads past the end.
    Bytes raster(sizeof header + palette.size());
    std::memcpy(raster.data(), &header, sizeof header);
    std::ranges::copy(palette, raster.begin() + sizeof header);
    return MakeIndexedImage(document_, bits.data(), *reinterpret_cast<const BITMAPINFOHEADER*>(raster.data()),
                            opacity);
  }

  engine::Library library_;
  engine::Document document_;
};

TEST_F(ImageMakerTest, StoresBitsOrColorsWithAMask) {
  struct Case {
    int32_t width, height;
    int bitCount;
    Bytes palette, rows;
    uint8_t opacity;
    int savedBits;
    Bytes data, alpha;
  };
  const Bytes wide = {0x80, 1, 2, 3, 0x7F, 0, 0, 0, 4, 5, 6, 7, 0xFF, 0, 0, 0};  // 33 pixels
  const Bytes wideComplemented = {0x7F, 0xFE, 0xFD, 0xFC, 0x80, 0xFB, 0xFA, 0xF9, 0xF8, 0};
  const Bytes transparentBlackWhite = {0, 0, 0, 0, 255, 255, 255, 255};  // transparent black is not black
  // Blue, green, red, alpha. Rows are four bytes long.
  const Bytes colors = {1, 2, 3, 0, 4, 5, 6, 100, 7, 8, 9, 255};
  const Bytes rows = {2, 1, 0, 99, 0, 0, 2, 99};
  const Bytes rgb = {9, 8, 7, 6, 5, 4, 3, 2, 1, 3, 2, 1, 3, 2, 1, 9, 8, 7};
  const Case cases[] = {
      {33, -2, 1, kBlackWhite, wide, 255, 1, {0x80, 1, 2, 3, 0x7F, 4, 5, 6, 7, 0xFF}, {}},
      {33, 2, 1, kWhiteBlack, wide, 255, 1, wideComplemented, {}},
      {32, 1, 1, kBlackWhite, {1, 2, 3, 4}, 255, 1, {1, 2, 3, 4}, {}},
      {3, 1, 1, kWhiteBlack, {0x40, 0, 0, 0}, 254, 8, {255, 255, 255, 0, 0, 0, 255, 255, 255}, Bytes(3, 254)},
      {2, -1, 1, transparentBlackWhite, {0x40, 0, 0, 0}, 255, 8, {0, 0, 0, 255, 255, 255}, {0, 255}},
      {3, 2, 8, colors, rows, 255, 8, rgb, {255, 100, 0, 0, 0, 255}},
      {3, 2, 8, colors, rows, 128, 8, rgb, {128, 50, 0, 0, 0, 128}}};
  for (const Case& c : cases) {
    SCOPED_TRACE(&c - cases);
    const uint32_t number = Make(c.width, c.height, c.bitCount, c.palette, c.rows, c.opacity);
    engine::SavedDocument saved(document_);
    auto image = saved.Object(number);
    EXPECT_EQ(image.getDict().getKey("/BitsPerComponent").getIntValueAsInt(), c.savedBits);
    EXPECT_EQ(engine::StreamData(image), Text(c.data));
    auto mask = image.getDict().getKey("/SMask");
    EXPECT_EQ(mask.isStream() ? engine::StreamData(mask) : "", Text(c.alpha));
  }
}

TEST_F(ImageMakerTest, RejectsRastersWithoutPixels) {
  const Bytes bits(8);
  BITMAPINFOHEADER header{};
  for (const int bitCount : {0, 1, 4, 8, 16, 24, 32}) {
    header.biBitCount = static_cast<uint16_t>(bitCount);
    EXPECT_EQ(IsIndexedRaster(bits.data(), &header), bitCount == 1 || bitCount == 8) << bitCount;
  }
  EXPECT_FALSE(IsIndexedRaster(bits.data(), nullptr));
  header.biBitCount = 8;
  EXPECT_FALSE(IsIndexedRaster(nullptr, &header));
  for (const int bitCount : {1, 8}) {
    EXPECT_EQ(Make(0, 1, bitCount, kBlackWhite, bits), 0U);
    EXPECT_EQ(Make(1, 0, bitCount, kBlackWhite, bits), 0U);
    EXPECT_EQ(Make(INT32_MAX, INT32_MAX, bitCount, kBlackWhite, bits), 0U);
  }
  EXPECT_TRUE(AlphaPlane(bits.data(), 1, 0, 255).Bytes().empty());
  EXPECT_THROW(static_cast<void>(AlphaPlane(bits.data(), -1, 1, 255)), std::bad_alloc);
  EXPECT_THROW(Make(-1, 1, 8, kBlackWhite, bits), std::bad_alloc);
  EXPECT_THROW(Make(1, INT32_MIN, 8, kBlackWhite, bits), std::bad_alloc);
  EXPECT_EQ(Make(1, INT32_MIN, 1, kBlackWhite, bits), 0U);
}

}  // namespace
}  // namespace hdi
