// Image files of all formats and depths, good and bad. The good ones, in images/, were made byte by byte, the
// JPEG files and lzw.tif by Poppler, those of inks by Pillow.
#include "hdiplot/image/image_file.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "hdiplot/image/image_book.h"
#include "hdiplot/system/errors.h"
#include "tests/support/scratch.h"

namespace hdiplot {
namespace {

using Color = std::array<uint8_t, 4>;  // blue, green, red, alpha

const std::filesystem::path kFolder = HDI_SOURCE_DIR "/tests/hdiplot/image/images";

// A row in hexadecimal, or as 'w' and 'b' for one bit. With the alpha unless it is 255.
std::string RowText(const ImageData& image, int32_t y) {
  const uint8_t* row = &image.pixels.at(RowBytes(image.width, image.bitCount) * static_cast<size_t>(y));
  std::string text;
  for (size_t x = 0; x < static_cast<size_t>(image.width); ++x) {
    Color color;
    if (image.bitCount == 32) std::copy_n(row + x * 4, 4, color.begin());
    if (image.bitCount == 8) color = image.palette.at(row[x]);
    if (image.bitCount == 1) color = image.palette.at(row[x / 8] >> (7 - x % 8) & 1);
    if (image.bitCount == 1) {
      text += color == Color{255, 255, 255, 255} ? 'w' : color == Color{0, 0, 0, 255} ? 'b' : '?';
      continue;
    }
    text += fmt::format("{}{:02x}{:02x}{:02x}", x > 0 ? " " : "", color[2], color[1], color[0]);
    if (color[3] != 255) text += fmt::format("/{:02x}", color[3]);
  }
  return text;
}

std::string Describe(const ImageData& image) {
  std::string text = fmt::format("{}{}", image.bitCount, image.hasAlpha ? " alpha" : "");
  for (int32_t y = 0; y < image.height; ++y) text += "|" + RowText(image, y);
  return text;
}

std::string ErrorOf(const std::filesystem::path& file) {
  try {
    (void)ReadImageFile(file);
  } catch (const FileError& error) {
    return std::string(error.what()).substr(file.string().size());
  }
  return "";
}

TEST(ImageFiles, AreReadFromTheTopInTheirOwnDepth) {
  const std::string colors = "|ff0000 00ff00 0000ff|000000 ffffff 808080";
  const std::string grays = "|000000 323232 646464|969696 c8c8c8 ffffff";
  const std::string bits = "1|wbwwbbbbw|bbbbbbbwb";
  const std::pair<const char*, std::string> cases[] = {
      {"rgb.png", "32" + colors},
      {"rgb_16_bits.png", "32" + colors},
      {"palette_4_bits.png", "8" + colors},
      {"palette_clear.png", "8 alpha|ff0000/00 00ff00/7f 0000ff|000000 ffffff 808080"},
      {"rgba.png", "32 alpha|ff0000/00 00ff00/7f 0000ff|000000 ffffff 808080"},
      {"rgba_unused.png", "32" + colors},  // with an alpha of 0 everywhere
      {"bitonal.png", bits},
      {"rgb.bmp", "32" + colors},
      {"rgb_from_the_top.bmp", "32" + colors},
      {"palette_8_bits.bmp", "8" + colors},
      {"palette_4_bits.bmp", "8" + colors},
      {"core_header.bmp", "8" + colors},
      {"masks_16_bits.bmp", "32|ff0000 00ff00 0000ff|000000 ffffff 838183"},
      {"masks_with_alpha.bmp", "32 alpha|ff0000/00 00ff00/7f 0000ff|000000 ffffff 808080"},
      {"bitonal.bmp", bits},
      {"two_pages.tif", "32" + colors},
      {"palette_4_bits.tif", "8" + colors},
      {"planes.tif", "32" + colors},
      {"tiles.tif", "32" + colors},
      {"inks.tif", "32" + colors},
      {"grey.tif", "8" + grays},
      {"grey_untold_samples.tif", "8" + grays},
      {"grey_16_bits.tif", "8" + grays},
      {"grey_with_alpha.tif", "32 alpha|000000/00 323232/7f 646464|969696 c8c8c8 ffffff"},
      {"bitonal_white_is_zero.tif", bits},
      {"two_frames.gif", "8" + colors},
      {"own_palette.gif", "8" + colors},
      {"clear.gif", "8 alpha|ff0000 00ff00 0000ff/00|000000 ffffff 808080"},
  };
  for (const auto& [name, wanted] : cases)
    EXPECT_EQ(Describe(ReadImageFile(kFolder / name).image), wanted) << name;
}

TEST(ImageFiles, MayBeCompressed) {
  const std::string green = "|00ff00 00ff00 00ff00 00ff00 00ff00 00ff00 00ff00 00ff00 00ff00";
  EXPECT_EQ(Describe(ReadImageFile(kFolder / "runs.bmp").image), "8" + green + green + green);
  EXPECT_EQ(Describe(ReadImageFile(kFolder / "runs_4_bits.bmp").image),
            "8|ff0000 00ff00 0000ff|000000 ffffff 808080");
  EXPECT_EQ(RowText(ReadImageFile(kFolder / "runs.tif").image, 2).substr(49, 13), "969696 969696");
  const ImageData lzw = ReadImageFile(kFolder / "lzw.tif").image;
  EXPECT_EQ(RowText(lzw, 7).substr(49, 13), "c81e28 1464c8");
}

TEST(ImageFiles, OfJpegComeNearTheirColors) {
  // 16 by 8, one colour on the left and another on the right; and 8 by 8 in one grey.
  const auto pixel = [](const ImageData& image, size_t x, size_t y) {
    const size_t bytes = static_cast<size_t>(image.bitCount) / 8;
    const uint8_t* at = &image.pixels.at(RowBytes(image.width, image.bitCount) * y + x * bytes);
    return bytes == 4 ? Color{at[0], at[1], at[2], at[3]} : image.palette.at(*at);
  };
  const auto expectNear = [](Color color, Color wanted) {
    for (size_t i = 0; i < 4; ++i) EXPECT_NEAR(color[i], wanted[i], 3);
  };
  const ImageData colors = ReadImageFile(kFolder / "rgb.jpg").image;
  EXPECT_EQ(colors.bitCount, 32);
  EXPECT_EQ(colors.width * 100 + colors.height, 1608);
  expectNear(pixel(colors, 1, 1), {40, 30, 200, 255});
  expectNear(pixel(colors, 14, 6), {200, 100, 20, 255});
  const ImageData grey = ReadImageFile(kFolder / "grey.jpg").image;
  EXPECT_EQ(grey.bitCount, 8);
  expectNear(pixel(grey, 7, 7), {82, 82, 82, 255});
  for (const char* name : {"inks.jpg", "inks_adobe.jpg"}) {
    expectNear(pixel(ReadImageFile(kFolder / name).image, 3, 3), {122, 40, 204, 255});
  }
}

std::string Word(uint32_t value, int bytes = 4) {
  std::string word;
  for (int i = 0; i < bytes; ++i) word += static_cast<char>(value >> 8 * i & 0xff);
  return word;
}

TEST(ImageFiles, ThatCannotBeUsedSayWhy) {
  const auto bitmap = [](uint32_t width, uint32_t height, uint32_t bits) {
    return "BM" + Word(0) + Word(0) + Word(54) + Word(40) + Word(width) + Word(height) + Word(1, 2) +
           Word(bits, 2) + std::string(24, '\0');
  };
  const std::string gif = "GIF89a" + Word(1, 2) + Word(1, 2) + std::string(3, '\0') + "\x21\xf9\x04" +
                          std::string(5, '\0') + "," + Word(0) + Word(65535, 2) + Word(65535, 2) + Word(8, 2);
  const std::string tooLarge = ": the image is too large: ";
  const std::string broken = ": the image is broken";
  const std::string unknown = ": not a PNG, JPEG, BMP, TIFF or GIF image";
  const std::pair<std::string, std::string> cases[] = {
      {"P1 1 1 1", unknown},
      {"", unknown},
      {"\x89PNG\r\n\x1a\n", broken},
      {"GIF89a", broken},
      {bitmap(65501, 1, 1), tooLarge + "65501 x 1 pixels"},
      {bitmap(1, 65501, 1), tooLarge + "1 x 65501 pixels"},
      {bitmap(65500, 1, 1), broken},
      {bitmap(0, 1, 24), broken},
      // A gibibyte at four bytes a pixel, and one row more; at one bit a pixel it fits.
      {bitmap(16384, 16384, 24), broken},
      {bitmap(16384, 16385, 24), tooLarge + "16384 x 16385 pixels"},
      {bitmap(40000, 40000, 8), tooLarge + "40000 x 40000 pixels"},
      {bitmap(60000, 60000, 1), broken},
      {gif, tooLarge + "65535 x 65535 pixels"},
  };
  const scratch::Directory place;
  for (const auto& [bytes, wanted] : cases) EXPECT_EQ(ErrorOf(place.Write("file", bytes)), wanted);
  EXPECT_EQ(ErrorOf(kFolder / "none.png"), ": no such image file");
  EXPECT_EQ(ErrorOf(kFolder), unknown);
}

TEST(ImageFiles, ThatAreCutShortAreReadAsFarAsTheyGo) {
  struct Case {
    const char* name;
    uintmax_t missing;  // bytes
    std::string rows;   // empty: unusable
  };
  const Case cases[] = {
      {"rgb.png", 20, "32|ff0000 00ff00 0000ff|000000 ffffff 808080"},
      {"rgb.png", 26, "32|ff0000 00ff00 0000ff|ffffff ffffff ffffff"},
      {"rgb.bmp", 1, "32|ffffff ffffff ffffff|000000 ffffff 808080"},
      {"rgb_from_the_top.bmp", 1, "32|ff0000 00ff00 0000ff|ffffff ffffff ffffff"},
      {"palette_4_bits.bmp", 1, "8|ffffff ffffff ffffff|000000 ffffff 808080"},
      {"bitonal.bmp", 1, "1|wwwwwwwww|bbbbbbbwb"},
      {"runs_4_bits.bmp", 8, "8|ffffff ffffff ffffff|000000 ffffff 808080"},
      {"grey.tif", 1, "8|000000 323232 646464|ffffff ffffff ffffff"},
      {"rgb.bmp", 13, ""},
      {"runs.tif", 1, ""},
      {"own_palette.gif", 15, ""},
      {"rgb.jpg", 20, ""},
  };
  const scratch::Directory place;
  for (const auto& [name, missing, rows] : cases) {
    const std::filesystem::path file = place.Path(name);
    std::filesystem::copy_file(kFolder / name, file, std::filesystem::copy_options::overwrite_existing);
    EXPECT_TRUE(ReadImageFile(file).isWhole) << name;
    std::filesystem::resize_file(file, std::filesystem::file_size(file) - missing);
    EXPECT_EQ(ErrorOf(file), rows.empty() ? ": the image is broken" : "") << name;
    if (rows.empty()) continue;
    const DecodedImage decoded = ReadImageFile(file);
    EXPECT_FALSE(decoded.isWhole) << name;
    EXPECT_EQ(Describe(decoded.image), rows) << name;
  }
}

TEST(Turned, GivesPalettesTheSameTurns) {
  ImageData image;
  image.width = 3;
  image.height = 2;
  image.bitCount = 8;
  image.pixels = {1, 2, 3, 0, 4, 5, 6, 0};
  const ImageData turned = Turned(image, {true, true, false});
  EXPECT_EQ(turned.width, 2);
  EXPECT_EQ(turned.pixels, (std::vector<uint8_t>{4, 1, 0, 0, 5, 2, 0, 0, 6, 3, 0, 0}));
}

TEST(ImageBook, TellsOnceWhatIsMissingOfAnImage) {
  const scratch::Directory place;
  std::filesystem::copy_file(kFolder / "rgb.bmp", place.Path("a.bmp"));
  std::filesystem::resize_file(place.Path("a.bmp"), std::filesystem::file_size(place.Path("a.bmp")) - 1);
  std::vector<std::string> messages;
  ImageBook book([&messages](const std::string& message) { messages.push_back(message); });
  EXPECT_NE(book.Find(place.Path(), "a.bmp", {}), nullptr);
  EXPECT_NE(book.Find(place.Path(), "a.bmp", {}, {true}), nullptr);
  EXPECT_EQ(messages,
            std::vector{place.Path("a.bmp") + ": the image is damaged; what can be read of it is plotted"});
  EXPECT_TRUE(book.HasUnusable());
}

TEST(ImageBook, KeepsEachFormOfAnImage) {
  const scratch::Directory place;
  std::filesystem::copy_file(kFolder / "rgb.png", place.Path("a.png"));
  std::vector<std::string> messages;
  ImageBook book([&messages](const std::string& message) { messages.push_back(message); });
  const Raster* read = book.Find(place.Path(), "sub\\a.png", {});
  ASSERT_NE(read, nullptr);
  std::filesystem::remove(place.Path("a.png"));
  EXPECT_EQ(book.Find(place.Path(), "a.png", {}), read);
  EXPECT_EQ(book.Find(place.Path(), "a.png", {.transparent = true}), read);
  const Raster* turned = book.Find(place.Path(), "a.png", {}, {true});
  EXPECT_NE(turned, read);
  EXPECT_EQ(book.Find(place.Path(), "a.png", {}, {true}), turned);
  EXPECT_TRUE(messages.empty());
}

}  // namespace
}  // namespace hdiplot
