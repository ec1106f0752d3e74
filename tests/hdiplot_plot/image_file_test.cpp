// Image files of all formats and depths, good and bad.
#include "host/hdiplot/image/image_file.h"

#include <FreeImage.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "host/hdiplot/errors.h"

namespace hdiplot {
namespace {

using Color = std::array<uint8_t, 4>;

class ImageFiles : public testing::Test {
 protected:
  // Tests run side by side, each in a process of its own.
  ImageFiles() : folder_(testing::TempDir() + "hdiplot_image_files." + std::to_string(getpid())) {
    std::filesystem::create_directories(folder_);
  }
  ~ImageFiles() override { std::filesystem::remove_all(folder_); }

  // An image of 9 by 3 pixels that `paint` has filled, as a file.
  template <typename Paint>
  std::filesystem::path Saved(FREE_IMAGE_FORMAT format, int bits, const Paint& paint) const {
    FIBITMAP* bitmap = FreeImage_Allocate(9, 3, bits);
    paint(bitmap);
    std::filesystem::path file = folder_ / "image";
    EXPECT_NE(FreeImage_Save(format, bitmap, file.c_str(),
                             format == FIF_JPEG ? JPEG_QUALITYSUPERB | JPEG_SUBSAMPLING_444 : 0),
              0);
    FreeImage_Unload(bitmap);
    return file;
  }

  std::filesystem::path Written(const std::string& bytes) const {
    std::filesystem::path file = folder_ / "bytes";
    std::ofstream(file, std::ios::binary) << bytes;
    return file;
  }

  static std::string ErrorOf(const std::filesystem::path& file) {
    try {
      (void)ReadImageFile(file);
    } catch (const FileError& error) {
      return std::string(error.what()).substr(file.string().size());
    }
    return "";
  }

  std::filesystem::path folder_;
};

Color PixelOf(const ImageData& image, size_t x, size_t y) {
  const uint8_t* pixel = &image.pixels.at(RowBytes(image.width, 32) * y + x * 4);
  return {pixel[0], pixel[1], pixel[2], pixel[3]};
}

void PaintColors(FIBITMAP* bitmap) {
  RGBQUAD red{0, 0, 200, 100};
  RGBQUAD blue{200, 0, 0, 255};
  for (unsigned y = 0; y < 3; ++y) {
    for (unsigned x = 0; x < 9; ++x) FreeImage_SetPixelColor(bitmap, x, y, y == 2 ? &red : &blue);
  }
}

TEST_F(ImageFiles, OfTrueColorHave32BitsFromTheTop) {
  for (const FREE_IMAGE_FORMAT format : {FIF_PNG, FIF_BMP, FIF_TIFF, FIF_JPEG}) {
    const ImageData image = ReadImageFile(Saved(format, 24, PaintColors));
    EXPECT_EQ(image.bitCount, 32);
    EXPECT_FALSE(image.hasAlpha);
    const Color top = PixelOf(image, 8, 0);
    EXPECT_NEAR(top[2], 200, 40) << format;
    EXPECT_LT(top[0], 90) << format;
    EXPECT_EQ(top[3], 255);
    EXPECT_GT(PixelOf(image, 0, 2)[0], 150) << format;
  }
}

TEST_F(ImageFiles, KeepAlphaUnlessItIsUnused) {
  const ImageData image = ReadImageFile(Saved(FIF_PNG, 32, PaintColors));
  EXPECT_TRUE(image.hasAlpha);
  EXPECT_EQ(PixelOf(image, 0, 0), (Color{0, 0, 200, 100}));
  const ImageData unused = ReadImageFile(Saved(FIF_TIFF, 32, [](FIBITMAP*) {}));
  EXPECT_FALSE(unused.hasAlpha);
  EXPECT_EQ(PixelOf(unused, 0, 0), (Color{0, 0, 0, 255}));
}

TEST_F(ImageFiles, WithPalettesKeepThem) {
  const auto paint = [](FIBITMAP* bitmap) {
    FreeImage_GetPalette(bitmap)[1] = {10, 20, 30, 0};
    BYTE one = 1;
    FreeImage_SetPixelIndex(bitmap, 8, 2, &one);
  };
  for (const FREE_IMAGE_FORMAT format : {FIF_PNG, FIF_BMP, FIF_TIFF, FIF_GIF}) {
    for (const int bits : {4, 8}) {
      if (format == FIF_GIF && bits == 4) continue;
      const ImageData image = ReadImageFile(Saved(format, bits, paint));
      ASSERT_EQ(image.bitCount, 8);
      EXPECT_EQ(image.palette.at(image.pixels.at(8)), (Color{10, 20, 30, 255})) << format << " " << bits;
    }
  }
  for (const int bits : {4, 8}) {
    const ImageData seeThrough = ReadImageFile(Saved(FIF_GIF, bits, [](FIBITMAP* bitmap) {
      FreeImage_SetTransparentIndex(bitmap, 0);
      FreeImage_SetTransparent(bitmap, TRUE);
    }));
    EXPECT_TRUE(seeThrough.hasAlpha) << bits;
    EXPECT_EQ(seeThrough.palette.at(0)[3], 0) << bits;
  }
}

TEST_F(ImageFiles, OfTwoColorsKeepOneBit) {
  for (const FREE_IMAGE_FORMAT format : {FIF_PNG, FIF_BMP, FIF_TIFF}) {
    const ImageData image = ReadImageFile(Saved(format, 1, [](FIBITMAP* bitmap) {
      FreeImage_GetPalette(bitmap)[0] = {0, 0, 0, 0};
      FreeImage_GetPalette(bitmap)[1] = {255, 255, 255, 0};
      BYTE one = 1;
      FreeImage_SetPixelIndex(bitmap, 8, 2, &one);
    }));
    ASSERT_EQ(image.bitCount, 1);
    EXPECT_EQ(image.palette, (std::vector<Color>{{0, 0, 0, 255}, {255, 255, 255, 255}})) << format;
    EXPECT_EQ(image.pixels.at(1) & 0x80, 0x80) << format;
    EXPECT_EQ(image.pixels.at(5) & 0x80, 0) << format;
  }
}

std::string Word(uint32_t value, int bytes = 4) {
  std::string word;
  for (int i = 0; i < bytes; ++i) word += static_cast<char>(value >> 8 * i & 0xff);
  return word;
}

TEST_F(ImageFiles, ThatCannotBeUsedSayWhy) {
  EXPECT_EQ(ErrorOf(folder_ / "none.png"), ": no such image file");
  EXPECT_EQ(ErrorOf(folder_), ": not a PNG, JPEG, BMP, TIFF or GIF image");
  EXPECT_EQ(ErrorOf(Written("P1 1 1 1")), ": not a PNG, JPEG, BMP, TIFF or GIF image");
  EXPECT_EQ(ErrorOf(Written("\x89PNG\r\n\x1a\n")), ": the image is broken");
  EXPECT_EQ(ErrorOf(Written("GIF89a")), ": the image is broken");
  const std::string bitmap = "BM" + Word(0) + Word(0) + Word(54) + Word(40) + Word(100000) + Word(100000) +
                             Word(1, 2) + Word(24, 2) + std::string(24, '\0');
  EXPECT_EQ(ErrorOf(Written(bitmap)), ": the image is too large: 100000 x 100000 pixels");
  const std::string gif = "GIF89a" + Word(1, 2) + Word(1, 2) + std::string(3, '\0') + "\x21\xf9\x04" +
                          std::string(5, '\0') + "," + Word(0) + Word(65535, 2) + Word(65535, 2);
  EXPECT_EQ(ErrorOf(Written(gif)), ": the image is too large: 65535 x 65535 pixels");
}

TEST_F(ImageFiles, ThatAreCutShortAreBroken) {
  for (const FREE_IMAGE_FORMAT format : {FIF_PNG, FIF_JPEG, FIF_BMP, FIF_TIFF, FIF_GIF}) {
    const auto file = Saved(format, format == FIF_GIF ? 8 : 24, [](FIBITMAP* bitmap) {
      for (unsigned y = 0; y < 3; ++y) {
        for (unsigned i = 0; i < FreeImage_GetLine(bitmap); ++i) {
          FreeImage_GetScanLine(bitmap, static_cast<int>(y))[i] = static_cast<BYTE>(i * i * (y + 7));
        }
      }
    });
    EXPECT_EQ(ErrorOf(file), "") << format;
    std::filesystem::resize_file(file, std::filesystem::file_size(file) - 20);
    EXPECT_EQ(ErrorOf(file), ": the image is broken") << format;
  }

  // A grey TIFF of 9 by 3 pixels that stand behind the directory, whole and with ten of them.
  const auto entry = [](uint32_t tag, uint32_t value) {
    return Word(tag, 2) + Word(4, 2) + Word(1) + Word(value);
  };
  std::string tiff = "II*" + std::string(1, '\0') + Word(8) + Word(8, 2) + entry(256, 9) + entry(257, 3) +
                     entry(258, 8) + entry(259, 1) + entry(262, 1) + entry(273, 110) + entry(278, 3) +
                     entry(279, 27) + Word(0);
  tiff.resize(137, 'x');
  EXPECT_EQ(ErrorOf(Written(tiff)), "");
  EXPECT_EQ(ErrorOf(Written(tiff.substr(0, 120))), ": the image is broken");
}

}  // namespace
}  // namespace hdiplot
