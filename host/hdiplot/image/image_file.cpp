// Sizes are looked at before any pixel is read: the header of a small file can ask for any amount of memory.
#include "host/hdiplot/image/image_file.h"

#include <FreeImage.h>
#include <tiffio.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>
#include <memory>
#include <optional>
#include <span>

#include "host/hdiplot/errors.h"

namespace hdiplot {

namespace {

constexpr uint64_t kLongestSide = 65500;      // of a JPEG, which images of 32 bits become
constexpr uint64_t kMostBytes = 1024U << 20;  // of the pixels

struct Unload {
  void operator()(FIBITMAP* bitmap) const { FreeImage_Unload(bitmap); }
};
using Bitmap = std::unique_ptr<FIBITMAP, Unload>;

struct Size {
  uint64_t width = 0;
  uint64_t height = 0;
  uint64_t bits = 0;  // a pixel
};

// The library below would tell standard error of every tag that it does not know.
void SilenceTiff() {
  TIFFSetWarningHandler(nullptr);
  TIFFSetErrorHandler(nullptr);
}

bool IsKnown(FREE_IMAGE_FORMAT format) {
  constexpr std::array kKnown = {FIF_PNG, FIF_JPEG, FIF_BMP, FIF_TIFF, FIF_GIF};
  return std::ranges::find(kKnown, format) != kKnown.end();
}

int LoadFlags(FREE_IMAGE_FORMAT format) { return format == FIF_JPEG ? JPEG_ACCURATE : 0; }

// The size of a GIF's first image, for which the library has to read all of it. Behind the screen and its
// palette stand extensions, which are chains of blocks with their lengths before them.
std::optional<Size> GifSize(const std::filesystem::path& file) {
  constexpr int kExtension = 0x21;
  constexpr int kImage = 0x2C;
  constexpr unsigned kHasPalette = 0x80;
  std::ifstream in(file, std::ios::binary);
  std::array<char, 13> screen{};
  in.read(screen.data(), screen.size());
  const auto flags = static_cast<unsigned char>(screen[10]);
  if ((flags & kHasPalette) != 0) in.ignore(3 * (2LL << (flags & 7U)));
  while (in.get() == kExtension) {
    in.ignore(1);
    for (int length = in.get(); length > 0 && in; length = in.get()) in.ignore(length);
  }
  in.unget();
  if (in.get() != kImage) return std::nullopt;
  std::array<char, 8> place{};
  if (!in.read(place.data(), place.size())) return std::nullopt;
  const auto word = [&place](size_t at) {
    return uint64_t{static_cast<unsigned char>(place[at])} |
           uint64_t{static_cast<unsigned char>(place[at + 1])} << 8;
  };
  return Size{word(4), word(6), 8};
}

std::optional<Size> SizeOf(const std::filesystem::path& file, FREE_IMAGE_FORMAT format) {
  if (format == FIF_GIF) return GifSize(file);
  const Bitmap header(FreeImage_Load(format, file.c_str(), FIF_LOAD_NOPIXELS));
  if (!header) return std::nullopt;
  return Size{FreeImage_GetWidth(header.get()), FreeImage_GetHeight(header.get()),
              FreeImage_GetBPP(header.get())};
}

bool IsTooLarge(const Size& size) {
  if (size.width > kLongestSide || size.height > kLongestSide) return true;
  const uint64_t bitsInMemory = size.bits <= 8 ? size.bits : std::max<uint64_t>(size.bits, 32);
  return size.width * size.height * bitsInMemory / 8 > kMostBytes;
}

// In one of the forms that a raster has, or null.
Bitmap Converted(Bitmap bitmap) {
  const FREE_IMAGE_TYPE type = FreeImage_GetImageType(bitmap.get());
  const unsigned bits = FreeImage_GetBPP(bitmap.get());
  if (type == FIT_BITMAP) {
    if (bits == 1 || bits == 8 || bits == 32) return bitmap;
    return Bitmap(bits < 8 ? FreeImage_ConvertTo8Bits(bitmap.get())
                           : FreeImage_ConvertTo32Bits(bitmap.get()));
  }
  if (type == FIT_RGB16 || type == FIT_RGBA16) return Bitmap(FreeImage_ConvertTo32Bits(bitmap.get()));
  if (type == FIT_UINT16) return Bitmap(FreeImage_ConvertTo8Bits(bitmap.get()));
  return Bitmap(FreeImage_ConvertToStandardType(bitmap.get(), TRUE));
}

void TakePalette(FIBITMAP* bitmap, ImageData& image) {
  const RGBQUAD* colors = FreeImage_GetPalette(bitmap);
  for (unsigned i = 0; i < FreeImage_GetColorsUsed(bitmap); ++i) {
    image.palette.push_back({colors[i].rgbBlue, colors[i].rgbGreen, colors[i].rgbRed, 255});
  }
  const std::span alphas(FreeImage_GetTransparencyTable(bitmap),
                         FreeImage_IsTransparent(bitmap) != 0 ? FreeImage_GetTransparencyCount(bitmap) : 0);
  for (size_t i = 0; i < std::min(alphas.size(), image.palette.size()); ++i) image.palette[i][3] = alphas[i];
  image.hasAlpha = std::ranges::any_of(image.palette, [](const auto& color) { return color[3] != 255; });
}

// An image that is transparent everywhere comes from a program that left the fourth byte unused.
void TakeAlpha(ImageData& image) {
  bool hasAlpha = false;
  bool isEmpty = true;
  for (size_t i = 3; i < image.pixels.size(); i += 4) {
    hasAlpha = hasAlpha || image.pixels[i] != 255;
    isEmpty = isEmpty && image.pixels[i] == 0;
  }
  image.hasAlpha = hasAlpha && !isEmpty;
  if (!isEmpty) return;
  for (size_t i = 3; i < image.pixels.size(); i += 4) image.pixels[i] = 255;
}

ImageData TakeImage(FIBITMAP* bitmap) {
  ImageData image;
  image.width = static_cast<int32_t>(FreeImage_GetWidth(bitmap));
  image.height = static_cast<int32_t>(FreeImage_GetHeight(bitmap));
  image.bitCount = static_cast<int32_t>(FreeImage_GetBPP(bitmap));
  const size_t rowBytes = RowBytes(image.width, image.bitCount);
  image.pixels.resize(rowBytes * static_cast<size_t>(image.height));
  for (int32_t row = 0; row < image.height; ++row) {
    // The library's rows run upwards.
    std::memcpy(&image.pixels[rowBytes * static_cast<size_t>(row)],
                FreeImage_GetScanLine(bitmap, image.height - 1 - row), FreeImage_GetLine(bitmap));
  }
  if (image.bitCount == 32) {
    TakeAlpha(image);
  } else {
    TakePalette(bitmap, image);
  }
  return image;
}

}  // namespace

ImageData ReadImageFile(const std::filesystem::path& file) {
  std::error_code unknown;
  if (!std::filesystem::exists(file, unknown)) throw InputError(file, 0, "no such image file");
  const bool isFile = std::filesystem::is_regular_file(file, unknown);
  const FREE_IMAGE_FORMAT format = isFile ? FreeImage_GetFileType(file.c_str(), 0) : FIF_UNKNOWN;
  if (!IsKnown(format)) throw InputError(file, 0, "not a PNG, JPEG, BMP, TIFF or GIF image");
  SilenceTiff();
  const std::optional<Size> size = SizeOf(file, format);
  if (!size || size->width == 0 || size->height == 0) throw InputError(file, 0, "the image is broken");
  if (IsTooLarge(*size)) {
    throw InputError(file, 0,
                     "the image is too large: " + std::to_string(size->width) + " x " +
                         std::to_string(size->height) + " pixels");
  }
  Bitmap bitmap(FreeImage_Load(format, file.c_str(), LoadFlags(format)));
  if (bitmap) bitmap = Converted(std::move(bitmap));
  if (!bitmap || FreeImage_HasPixels(bitmap.get()) == 0) throw InputError(file, 0, "the image is broken");
  return TakeImage(bitmap.get());
}

}  // namespace hdiplot
