// Images on paper: where they lie, how they are turned, what is seen of them, and what takes their place.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ranges>

#include "tests/hdiplot_plot/logging_driver.h"

namespace hdiplot {
namespace {

using Color = std::array<uint8_t, 4>;

std::string Word(uint32_t value, int bytes = 4) {
  std::string word;
  for (int i = 0; i < bytes; ++i) word += static_cast<char>(value >> 8 * i & 0xff);
  return word;
}

// A BMP of a byte a pixel, given from the top. The palette is grey, but for its first color.
std::string Bitmap(uint32_t width, const std::vector<std::string>& rows, const std::string& first) {
  std::string palette = first + std::string(1, '\0');
  for (uint32_t i = 1; i < 256; ++i) palette += Word(i * 0x010101);
  std::string pixels;
  for (const std::string& row : std::views::reverse(rows)) {
    pixels += row + std::string((4 - width % 4) % 4, '\0');
  }
  return "BM" + Word(static_cast<uint32_t>(54 + 1024 + pixels.size())) + Word(0) + Word(54 + 1024) +
         Word(40) + Word(width) + Word(static_cast<uint32_t>(rows.size())) + Word(1, 2) + Word(8, 2) +
         std::string(24, '\0') + palette + pixels;
}

class PlotImages : public testing::Test {
 protected:
  PlotImages() : drawing_(SheetDrawing()) {
    drawing_.folder = testing::TempDir() + "hdiplot_plot_images." + std::to_string(getpid());
    std::filesystem::create_directories(drawing_.folder);
    // 1 2 3
    // 4 5 6
    std::ofstream(drawing_.folder / "a.bmp", std::ios::binary)
        << Bitmap(3, {"\x01\x02\x03", "\x04\x05\x06"}, std::string("\0\0\xff", 3));
    drawing_.imageFiles["1"] = "C:\\scans\\a.bmp";
  }
  ~PlotImages() override { std::filesystem::remove_all(drawing_.folder); }

  // From a corner, 300 units along and 200 up.
  static ImageEntity ImageAt(Vec2 corner, Vec2 right = {300, 0}, Vec2 up = {0, 200}) {
    ImageEntity image;
    image.definition = "1";
    image.corner = corner;
    image.right = right;
    image.up = up;
    return image;
  }

  std::vector<LoggedCall> Plot(const Shape& shape) {
    drawing_.entities.resize(2);
    drawing_.entities.push_back(Thing(shape));
    return PlotOnSheet(drawing_);
  }

  // The only image of the plot.
  LoggedCall PlotOne(const ImageEntity& image) {
    const auto images = Named(Plot(image), "Bitmap");
    EXPECT_EQ(images.size(), 1U);
    return images.empty() ? LoggedCall() : images.front();
  }

  Drawing drawing_;
};

// Without the ends of the rows.
std::vector<std::vector<int>> Rows(const ImageData& image) {
  std::vector<std::vector<int>> rows;
  for (int32_t y = 0; y < image.height; ++y) {
    const auto* row = &image.pixels.at(RowBytes(image.width, 8) * static_cast<size_t>(y));
    rows.emplace_back(row, row + image.width);
  }
  return rows;
}

using Grid = std::vector<std::vector<int>>;

TEST_F(PlotImages, LieUprightWithTheirOwnPixels) {
  const LoggedCall upright = PlotOne(ImageAt({500, 1000}));
  EXPECT_DOUBLE_EQ(upright.points[0][0].x, 500);
  EXPECT_DOUBLE_EQ(upright.points[0][0].y, 1800);
  EXPECT_EQ(upright.numbers, (std::vector<double>{100, 100}));
  EXPECT_EQ(Rows(upright.image), (Grid{{1, 2, 3}, {4, 5, 6}}));
  EXPECT_EQ(Rows(PlotOne(ImageAt({800, 1000}, {-300, 0})).image), (Grid{{3, 2, 1}, {6, 5, 4}}));

  // A quarter turn to the left stands on the image's right side.
  const LoggedCall turned = PlotOne(ImageAt({500, 1000}, {0, 300}, {-200, 0}));
  EXPECT_EQ(Rows(turned.image), (Grid{{3, 6}, {2, 5}, {1, 4}}));
  EXPECT_NEAR(turned.points[0][0].x, 300, 1e-9);
  EXPECT_NEAR(turned.points[0][0].y, 1700, 1e-9);
}

TEST_F(PlotImages, ThatAreTurnedOtherwiseAreMadeAnew) {
  const LoggedCall turned = PlotOne(ImageAt({1000, 1000}, {240, 180}, {-120, 160}));
  EXPECT_NEAR(turned.points[0][0].x, 880, 1e-9);
  EXPECT_NEAR(turned.points[0][0].y, 3000 - 1340, 1e-9);
  EXPECT_NEAR(turned.numbers[0] * turned.image.width, 360, 1e-9);
  EXPECT_NEAR(turned.numbers[1] * turned.image.height, 340, 1e-9);
  EXPECT_TRUE(turned.image.hasAlpha);
  const auto at = [&turned](double x, double y) {
    const auto column = static_cast<size_t>((x - turned.points[0][0].x) / turned.numbers[0]);
    const auto row = static_cast<size_t>((y - turned.points[0][0].y) / turned.numbers[1]);
    const uint8_t* pixel =
        &turned.image.pixels.at((row * static_cast<size_t>(turned.image.width) + column) * 4);
    return Color{pixel[0], pixel[1], pixel[2], pixel[3]};
  };
  EXPECT_EQ(at(881, 1661)[3], 0);
  EXPECT_EQ(at(1000, 1830)[3], 255);
  EXPECT_NEAR(at(1000, 1830)[0], 4, 2);
  EXPECT_NEAR(at(1120, 1680)[0], 3, 2);
  EXPECT_EQ(at(1117, 1906)[3], 255) << "the sides are straight, large as the pixels are";
  EXPECT_EQ(at(1123, 1914)[3], 0);
}

TEST_F(PlotImages, AreClippedOnlyThemselves) {
  ImageEntity image = ImageAt({500, 1000});
  image.clip = {{500, 1000}, {600, 1000}, {600, 1100}};
  const auto calls = Plot(image);
  std::vector<std::string> course;
  std::ranges::transform(calls, std::back_inserter(course), &LoggedCall::name);
  EXPECT_EQ(course, (std::vector<std::string>{"SetClip", "Bitmap", "SetClip"}));
  ASSERT_EQ(calls[0].points[0].size(), 3U);
  EXPECT_DOUBLE_EQ(calls[0].points[0][2].x, 600);
  EXPECT_DOUBLE_EQ(calls[0].points[0][2].y, 1900);
  EXPECT_DOUBLE_EQ(calls[2].points[0][2].x, 4000) << "beyond the sheet";

  drawing_.entities.back().attributes.link = "there";
  const auto linked = Named(PlotOnSheet(drawing_), "PolyPolygon");
  ASSERT_EQ(linked.size(), 1U);
  EXPECT_DOUBLE_EQ(linked[0].points[0][1].x, 600) << "a link is of what is seen";
  drawing_.entities.back().attributes.link.clear();

  // On a sheet that is a clip itself, what lies beyond it is cut away, and the sheet comes back.
  drawing_.entities[1] = Thing(PointEntity{{2000, 3100}});
  image.clip = {{600, 1000}, {-100, 1000}, {600, 1700}};
  const auto larger = Named(PlotToLog(drawing_, OneToOne()), "SetClip");
  EXPECT_EQ(larger.size(), 4U);
  EXPECT_EQ(larger.back().points[0].size(), 4U);
  EXPECT_DOUBLE_EQ(larger.back().points[0][2].x, 2000);

  image.clipInverted = true;
  image.clip = {{400, 900}, {900, 900}, {900, 1300}, {400, 1300}};
  EXPECT_TRUE(Named(Plot(image), "Bitmap").empty()) << "nothing is left of it";
}

TEST_F(PlotImages, AreReadOnceAndReportedOnce) {
  drawing_.imageFiles["2"] = "sub/none.png";
  ImageEntity missing = ImageAt({500, 1000});
  missing.definition = "2";
  missing.clip = {{500, 1000}, {600, 1000}, {600, 1100}};
  const auto calls = Plot(missing);
  EXPECT_TRUE(Named(calls, "Bitmap").empty());
  ASSERT_EQ(calls.back().name, "Polyline");
  EXPECT_EQ(calls.back().points[0].size(), 4U);

  std::vector<std::string> messages;
  ImageBook book([&messages](const std::string& message) { messages.push_back(message); });
  EXPECT_EQ(book.Find(drawing_.folder, "sub/none.png", {}), nullptr);
  EXPECT_EQ(book.Find(drawing_.folder, "sub\\none.png", {true}), nullptr);
  EXPECT_EQ(messages,
            (std::vector<std::string>{(drawing_.folder / "sub/none.png").string() + ": no such image file"}));
  const Raster* read = book.Find(drawing_.folder, "a.bmp", {});
  ASSERT_NE(read, nullptr);
  std::filesystem::remove(drawing_.folder / "a.bmp");
  EXPECT_EQ(book.Find(drawing_.folder, "a.bmp", {}), read);
  const Raster* turned = book.Find(drawing_.folder, "a.bmp", {}, {true});
  EXPECT_NE(turned, read);
  EXPECT_EQ(book.Find(drawing_.folder, "a.bmp", {}, {true}), turned);
}

TEST_F(PlotImages, OfNothingHideInTheColorOfThePaper) {
  WipeoutEntity wipeout{{{{500, 1000}, {600, 1000}, {600, 1100}}}};
  const auto calls = Plot(wipeout);
  ASSERT_EQ(Named(calls, "PolyPolygon").size(), 1U);
  EXPECT_EQ(Named(calls, "PolyPolygon")[0].points[0].size(), 4U);  // closed
  EXPECT_EQ(Named(calls, "SetPen").back().pen.color, (Rgb{255, 255, 255}));
  EXPECT_EQ(calls.size(), 2U);
}

ImageData OfColors(int bits, bool hasAlpha, std::vector<Color> palette, std::vector<uint8_t> pixels) {
  ImageData image{4, 1, bits, hasAlpha, std::move(palette), std::move(pixels)};
  return image;
}

TEST(ImageLooks, LayOnWhiteOrLetThePaperThrough) {
  const std::vector<Color> black{{0, 0, 0, 255}, {255, 255, 255, 255}};
  ImageData bitonal = OfColors(1, false, black, {0x50, 0, 0, 0});
  ApplyLook({}, bitonal);
  EXPECT_EQ(bitonal.palette, black);
  ApplyLook({true}, bitonal);
  EXPECT_EQ(bitonal.palette[1], (Color{255, 255, 255, 0}));

  ImageData clear = OfColors(8, true, {{0, 100, 200, 0}, {0, 100, 200, 127}}, {0, 1, 0, 1});
  ImageData opaque = clear;
  ApplyLook({true}, clear);
  EXPECT_EQ(clear.palette[0][3], 0);
  ApplyLook({}, opaque);
  EXPECT_EQ(opaque.palette, (std::vector<Color>{{255, 255, 255, 255}, {128, 178, 228, 255}}));
  EXPECT_FALSE(opaque.hasAlpha);
}

TEST(ImageLooks, TurnColoursToGrey) {
  ImageData image = OfColors(8, false, {{0, 0, 255, 255}}, {0, 0, 0, 0});
  ImageLook grey;
  grey.grey = true;
  ApplyLook(grey, image);
  EXPECT_EQ(image.palette[0], (Color{76, 76, 76, 255}));
}

TEST(ImageLooks, FadeBrightenAndSharpen) {
  const auto toned = [](const ImageLook& look, uint8_t value) {
    ImageData image = OfColors(8, false, {{value, value, value, 255}}, {0, 0, 0, 0});
    ApplyLook(look, image);
    return int{image.palette[0][0]};
  };
  EXPECT_EQ(toned({}, 77), 77);
  EXPECT_EQ(toned({false, 50, 50, 100}, 77), 255);
  EXPECT_EQ(toned({false, 50, 50, 50}, 55), 155);
  EXPECT_EQ(toned({false, 100, 50, 0}, 77), 255);
  EXPECT_EQ(toned({false, 0, 50, 0}, 77), 0);
  EXPECT_EQ(toned({false, 50, 100, 0}, 77), 0);
  EXPECT_NEAR(toned({false, 50, 0, 0}, 77), 128, 1);
}

}  // namespace
}  // namespace hdiplot
