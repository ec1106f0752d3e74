#include "hdiplot/image/image_format.h"

#include <array>
#include <string_view>

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

}  // namespace hdiplot
