// Rasters, as the pixels of the saved images tell them.
#include "images/image_maker.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <new>

#include "images/palette_expansion.h"
#include "tests/support/saved_document.h"

namespace hdi {
namespace {

using Bytes = std::vector<uint8_t>;

const Bytes kBlackWhite = {0, 0, 0, 255, 255, 255, 255, 255};
const Bytes kWhiteBlack = {255, 255, 255, 255, 0, 0, 0, 255};

struct Picture {
  int bits = 0;
  std::string data;
  std::string alpha;
};

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
    // Both end with their last byte, so that the sanitizer sees what is read beyond.
    Bytes raster(sizeof header + palette.size());
    std::memcpy(raster.data(), &header, sizeof header);
    if (!palette.empty()) std::memcpy(raster.data() + sizeof header, palette.data(), palette.size());
    return MakeIndexedImage(document_, bits.data(), *reinterpret_cast<const BITMAPINFOHEADER*>(raster.data()),
                            opacity);
  }

  Picture Made(int32_t width, int32_t height, int bitCount, const Bytes& palette, const Bytes& bits,
               uint8_t opacity = 255) {
    const uint32_t number = Make(width, height, bitCount, palette, bits, opacity);
    if (number == 0) return {};
    engine::SavedDocument saved(document_);
    auto image = saved.Object(number);
    auto mask = image.getDict().getKey("/SMask");
    return {image.getDict().getKey("/BitsPerComponent").getIntValueAsInt(), engine::StreamData(image),
            mask.isStream() ? engine::StreamData(mask) : ""};
  }

  engine::Library library_;
  engine::Document document_;
};

TEST_F(ImageMakerTest, BlackAndWhiteStayOneBit) {
  const Bytes rows = {0x80, 1, 2, 3, 0x7F, 0, 0, 0, 4, 5, 6, 7, 0xFF, 0, 0, 0};  // 33 pixels
  const Picture direct = Made(33, -2, 1, kBlackWhite, rows);
  EXPECT_EQ(direct.bits, 1);
  EXPECT_EQ(direct.data, Text({0x80, 1, 2, 3, 0x7F, 4, 5, 6, 7, 0xFF}));
  EXPECT_EQ(direct.alpha, "");
  EXPECT_EQ(Made(32, 1, 1, kBlackWhite, {1, 2, 3, 4}).data, Text({1, 2, 3, 4}));

  const Picture complemented = Made(33, 2, 1, kWhiteBlack, rows);
  EXPECT_EQ(complemented.bits, 1);
  EXPECT_EQ(complemented.data, Text({0x7F, 0xFE, 0xFD, 0xFC, 0x80, 0xFB, 0xFA, 0xF9, 0xF8, 0}));
  EXPECT_EQ(complemented.alpha, "");
}

TEST_F(ImageMakerTest, OtherBitsBecomeColours) {
  const Picture translucent = Made(9, 1, 1, kWhiteBlack, {0x40, 0xFF, 0, 0}, 254);
  EXPECT_EQ(translucent.bits, 8);
  EXPECT_EQ(translucent.data,
            std::string(3, '\xFF') + Text({0, 0, 0}) + std::string(18, '\xFF') + Text({0, 0, 0}));
  EXPECT_EQ(translucent.alpha, std::string(9, '\xFE'));

  // Transparent black is not black.
  const Picture transparent = Made(2, -1, 1, {0, 0, 0, 0, 255, 255, 255, 255}, {0x40, 0, 0, 0});
  EXPECT_EQ(transparent.data, Text({0, 0, 0, 255, 255, 255}));
  EXPECT_EQ(transparent.alpha, Text({0, 255}));
}

TEST_F(ImageMakerTest, BytesAreLookedUpInThePalette) {
  // Blue, green, red, alpha. Rows are four bytes long.
  const Bytes palette = {1, 2, 3, 0, 4, 5, 6, 100, 7, 8, 9, 255};
  const Bytes rows = {2, 1, 0, 99, 0, 0, 2, 99};
  const Picture opaque = Made(3, 2, 8, palette, rows);
  EXPECT_EQ(opaque.bits, 8);
  EXPECT_EQ(opaque.data, Text({9, 8, 7, 6, 5, 4, 3, 2, 1, 3, 2, 1, 3, 2, 1, 9, 8, 7}));
  EXPECT_EQ(opaque.alpha, Text({255, 100, 0, 0, 0, 255}));
  EXPECT_EQ(Made(3, 2, 8, palette, rows, 128).alpha, Text({128, 50, 0, 0, 0, 128}));
}

TEST_F(ImageMakerTest, AnAlphaPlaneHasTheFourthBytesUnderTheOpacity) {
  const Bytes pixels = {9, 9, 9, 255, 9, 9, 9, 1, 9, 9, 9, 100, 9, 9, 9, 0};
  const auto plane = [&](uint8_t opacity) {
    const Plane alpha = AlphaPlane(pixels.data(), 2, 2, opacity);
    return Bytes(alpha.Bytes().begin(), alpha.Bytes().end());
  };
  EXPECT_EQ(plane(255), (Bytes{255, 1, 100, 0}));
  EXPECT_EQ(plane(128), (Bytes{128, 1, 50, 0}));
  EXPECT_EQ(plane(127), (Bytes{127, 0, 50, 0}));
  EXPECT_EQ(plane(0), (Bytes{0, 0, 0, 0}));
  EXPECT_THROW(static_cast<void>(AlphaPlane(pixels.data(), -1, 1, 255)), std::bad_alloc);
}

TEST_F(ImageMakerTest, WhatHasNoPixelsMakesNone) {
  const Bytes bits(8);
  BITMAPINFOHEADER header{};
  for (const int bitCount : {0, 1, 4, 8, 16, 24, 32}) {
    header.biBitCount = static_cast<uint16_t>(bitCount);
    EXPECT_EQ(IsIndexedRaster(bits.data(), &header), bitCount == 1 || bitCount == 8) << bitCount;
  }
  EXPECT_FALSE(IsIndexedRaster(nullptr, &header));
  EXPECT_FALSE(IsIndexedRaster(bits.data(), nullptr));
  for (const int bitCount : {1, 8}) {
    EXPECT_EQ(Make(0, 1, bitCount, kBlackWhite, bits), 0U);
    EXPECT_EQ(Make(1, 0, bitCount, kBlackWhite, bits), 0U);
    EXPECT_EQ(Make(INT32_MAX, INT32_MAX, bitCount, kBlackWhite, bits), 0U);
  }
  EXPECT_THROW(Make(-1, 1, 8, kBlackWhite, bits), std::bad_alloc);
  EXPECT_THROW(Make(1, INT32_MIN, 8, kBlackWhite, bits), std::bad_alloc);
  EXPECT_EQ(Make(1, INT32_MIN, 1, kBlackWhite, bits), 0U);
}

}  // namespace
}  // namespace hdi
