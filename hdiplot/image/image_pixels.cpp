#include "hdiplot/image/image_pixels.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "hdiplot/image/pixel_rows.h"

namespace hdiplot {

namespace {

// Pixels by column and row.
class PixelReader {
 public:
  explicit PixelReader(const ImageData& image)
      : image_(image), rowBytes_(RowBytes(image.width, image.bitCount)) {}

  [[nodiscard]] PixelColor At(int32_t x, int32_t y) const {
    if (image_.bitCount != 32) {
      const size_t index = Index(x, y);
      return index < image_.palette.size() ? image_.palette[index] : PixelColor{0, 0, 0, 255};
    }
    const uint8_t* pixel = Row(y) + static_cast<size_t>(x) * 4;
    return {pixel[0], pixel[1], pixel[2], pixel[3]};
  }

  // Of a pixel of 1 or 8 bits, in the palette.
  [[nodiscard]] uint8_t Index(int32_t x, int32_t y) const {
    const auto column = static_cast<size_t>(x);
    if (image_.bitCount == 8) return Row(y)[column];
    return static_cast<uint8_t>(Row(y)[column / 8] >> (7 - column % 8) & 1);
  }

 private:
  [[nodiscard]] const uint8_t* Row(int32_t y) const {
    return image_.pixels.data() + rowBytes_ * static_cast<size_t>(y);
  }

  const ImageData& image_;
  size_t rowBytes_;
};

uint8_t ByteOf(double value) { return static_cast<uint8_t>(std::clamp(value, 0.0, 255.0) + 0.5); }

// Brightness, contrast and fading to white as one table for all three components.
std::array<uint8_t, 256> ToneCurve(const ImageLook& look) {
  const double slope = look.contrast <= 50 ? look.contrast / 50.0 : 50.0 / std::max(100 - look.contrast, 1);
  const double lift = (look.brightness - 50) / 50.0 * 255;
  std::array<uint8_t, 256> curve{};
  for (size_t i = 0; i < curve.size(); ++i) {
    const double toned = std::clamp((static_cast<double>(i) - 127.5) * slope + 127.5 + lift, 0.0, 255.0);
    curve[i] = ByteOf(toned + (255 - toned) * look.fade / 100);
  }
  return curve;
}

void MakeGrey(uint8_t* color) {
  const int luma = (114 * color[0] + 587 * color[1] + 299 * color[2] + 500) / 1000;
  std::fill_n(color, 3, static_cast<uint8_t>(luma));
}

void LayOnWhite(uint8_t* color) {
  const int alpha = color[3];
  for (size_t i = 0; i < 3; ++i)
    color[i] = static_cast<uint8_t>((color[i] * alpha + 255 * (255 - alpha) + 127) / 255);
  color[3] = 255;
}

// Calls `change` with the address of every colour: of the palette, or of each pixel.
template <typename Change>
void ChangeColors(ImageData& image, const Change& change) {
  if (image.bitCount != 32) {
    for (PixelColor& color : image.palette) change(color.data());
    return;
  }
  for (size_t i = 0; i + 4 <= image.pixels.size(); i += 4) change(&image.pixels[i]);
}

struct Neighbours {
  int32_t first = 0;
  int32_t second = 0;
  double part = 0;  // of the second
};

// The two pixels of a line of `size` whose centres enclose `at`. They blend over a `width` of at most 1.
Neighbours NeighboursOf(double at, int32_t size, double width) {
  const double last = size - 1;
  const double within = std::clamp(at - 0.5, 0.0, last);
  const double first = std::floor(within);
  const double part = std::clamp((within - first - 0.5) / width + 0.5, 0.0, 1.0);
  return {static_cast<int32_t>(first), static_cast<int32_t>(std::min(first + 1, last)), part};
}

// Weighted by alpha, so that transparent pixels do not colour their neighbours.
PixelColor Interpolated(const PixelReader& pixels, const Neighbours& x, const Neighbours& y) {
  const std::array<PixelColor, 4> colors = {pixels.At(x.first, y.first), pixels.At(x.second, y.first),
                                            pixels.At(x.first, y.second), pixels.At(x.second, y.second)};
  const std::array<double, 4> parts = {(1 - x.part) * (1 - y.part), x.part * (1 - y.part),
                                       (1 - x.part) * y.part, x.part * y.part};
  std::array<double, 4> sums{};
  for (size_t i = 0; i < colors.size(); ++i) {
    const double weight = parts[i] * colors[i][3];
    for (size_t k = 0; k < 3; ++k) sums[k] += colors[i][k] * weight;
    sums[3] += weight;
  }
  if (!(sums[3] > 0)) return {colors[0][0], colors[0][1], colors[0][2], 0};
  return {ByteOf(sums[0] / sums[3]), ByteOf(sums[1] / sums[3]), ByteOf(sums[2] / sums[3]), ByteOf(sums[3])};
}

}  // namespace

void ApplyLook(const ImageLook& look, ImageData& image) {
  const bool isBitonal = image.bitCount == 1;
  const bool wasTransparent = image.hasAlpha;
  if (look.transparent && isBitonal && !wasTransparent) {
    for (PixelColor& color : image.palette) {
      if (color == PixelColor{255, 255, 255, 255}) color[3] = 0;
    }
  }
  if (look.grey) ChangeColors(image, MakeGrey);
  const auto curve = ToneCurve(look);
  ChangeColors(image, [&curve](uint8_t* color) {
    for (size_t i = 0; i < 3; ++i) color[i] = curve[color[i]];
  });
  if (look.transparent) {
    image.hasAlpha = wasTransparent || isBitonal;
  } else if (wasTransparent) {
    ChangeColors(image, LayOnWhite);
    image.hasAlpha = false;
  }
}

ImageData Turned(const ImageData& image, const ImageTurn& turn) {
  ImageData turned = image;
  if (turn.swapped) std::swap(turned.width, turned.height);
  const size_t rowBytes = RowBytes(turned.width, turned.bitCount);
  turned.pixels.assign(rowBytes * static_cast<size_t>(turned.height), 0);
  const PixelReader pixels(image);
  for (int32_t y = 0; y < turned.height; ++y) {
    uint8_t* row = &turned.pixels[rowBytes * static_cast<size_t>(y)];
    const int32_t seenY = turn.fromBottom ? turned.height - 1 - y : y;
    for (int32_t x = 0; x < turned.width; ++x) {
      const int32_t seenX = turn.fromRight ? turned.width - 1 - x : x;
      const int32_t fromX = turn.swapped ? seenY : seenX;
      const int32_t fromY = turn.swapped ? seenX : seenY;
      const auto column = static_cast<size_t>(x);
      if (image.bitCount == 32) {
        std::ranges::copy(pixels.At(fromX, fromY), row + column * 4);
      } else if (image.bitCount == 8) {
        row[column] = pixels.Index(fromX, fromY);
      } else {
        row[column / 8] |= static_cast<uint8_t>(pixels.Index(fromX, fromY) << (7 - column % 8));
      }
    }
  }
  return turned;
}

ImageData Resampled(const ImageData& image, const Affine& map, int32_t width, int32_t height) {
  ImageData made;
  made.width = width;
  made.height = height;
  made.bitCount = 32;
  made.hasAlpha = true;
  made.pixels.reserve(RowBytes(width, 32) * static_cast<size_t>(height));
  const PixelReader pixels(image);
  // The size of a new pixel in those of the image, at most one of them.
  const double acrossX = std::clamp(std::abs(map.a) + std::abs(map.c), 1e-6, 1.0);
  const double acrossY = std::clamp(std::abs(map.b) + std::abs(map.d), 1e-6, 1.0);
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      const Vec2 from = map({x + 0.5, y + 0.5});
      PixelColor color = Interpolated(pixels, NeighboursOf(from.x, image.width, acrossX),
                                      NeighboursOf(from.y, image.height, acrossY));
      const bool isInside = from.x >= 0 && from.x <= image.width && from.y >= 0 && from.y <= image.height;
      if (!isInside) color[3] = 0;
      made.pixels.insert(made.pixels.end(), color.begin(), color.end());
    }
  }
  return made;
}

}  // namespace hdiplot
