// Sizes are checked before any pixel is read: the header of a small file can ask for any amount of memory.
#include "hdiplot/image/image_file.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <system_error>
#include <utility>

#include "hdiplot/system/errors.h"

namespace hdiplot {

namespace {

using namespace std::string_view_literals;

struct Start {
  std::string_view bytes;
  ImageFormat format;
};

constexpr Start kStarts[] = {
    {"\x89PNG\r\n\x1a\n"sv, ImageFormat::kPng},
    {"\xff\xd8\xff"sv, ImageFormat::kJpeg},
    {"BM"sv, ImageFormat::kBmp},
    {"II*\0"sv, ImageFormat::kTiff},
    {"MM\0*"sv, ImageFormat::kTiff},
    {"II+\0"sv, ImageFormat::kTiff},  // the last two: BigTIFF
    {"MM\0+"sv, ImageFormat::kTiff},
    {"GIF8"sv, ImageFormat::kGif},
};

constexpr uint64_t kLongestSide = 65500;      // of a JPEG, which images of 32 bits become
constexpr uint64_t kMostBytes = 1024U << 20;  // of the pixels

bool IsTooLarge(const ImageSize& size) {
  if (size.width > kLongestSide || size.height > kLongestSide) return true;
  const uint64_t bitsInMemory = size.bits <= 8 ? size.bits : std::max<uint64_t>(size.bits, 32);
  return size.width * size.height * bitsInMemory / 8 > kMostBytes;
}

// Sets hasAlpha. An image that is transparent everywhere comes from a program that left the fourth byte
// unused, and becomes opaque.
void SettleAlpha(ImageData& image) {
  if (image.bitCount != 32) {
    image.hasAlpha = std::ranges::any_of(image.palette, [](const auto& color) { return color[3] != 255; });
    return;
  }
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

}  // namespace

std::optional<ImageFormat> FormatOf(std::FILE* file) {
  std::array<char, 8> bytes{};
  std::rewind(file);
  const std::string_view start(bytes.data(), std::fread(bytes.data(), 1, bytes.size(), file));
  std::rewind(file);
  for (const Start& known : kStarts) {
    if (start.starts_with(known.bytes)) return known.format;
  }
  return std::nullopt;
}

DecodedImage ReadImageFile(const std::filesystem::path& file) {
  std::error_code unknown;
  if (!std::filesystem::exists(file, unknown)) throw FileError(file, 0, "no such image file");
  const bool isFile = std::filesystem::is_regular_file(file, unknown);
  const std::unique_ptr<ImageDecoder> decoder = isFile ? OpenImage(file) : nullptr;
  if (!decoder) throw FileError(file, 0, "not a PNG, JPEG, BMP, TIFF or GIF image");
  const std::optional<ImageSize> size = decoder->Size();
  if (!size || size->width == 0 || size->height == 0) throw FileError(file, 0, "the image is broken");
  if (IsTooLarge(*size)) {
    throw FileError(file, 0,
                    "the image is too large: " + std::to_string(size->width) + " x " +
                        std::to_string(size->height) + " pixels");
  }
  std::optional<DecodedImage> decoded = decoder->Decode();
  if (!decoded) throw FileError(file, 0, "the image is broken");
  SettleAlpha(decoded->image);
  return std::move(*decoded);
}

}  // namespace hdiplot
