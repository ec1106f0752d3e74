// What makes pixels of image files: the system's libraries, and code of our own for BMP. Everything that is
// the same for each of them is in image_file.cpp.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>

#include "hdiplot/device/raster.h"

namespace hdiplot {

struct ImageSize {
  uint64_t width = 0;
  uint64_t height = 0;
  uint64_t bits = 0;  // a pixel, while it is decoded
};

struct DecodedImage {
  ImageData image;
  bool isWhole = true;  // false: the file is cut off or damaged, and what could not be read of it is white
};

class ImageDecoder {
 public:
  ImageDecoder() = default;
  ImageDecoder(const ImageDecoder&) = delete;
  ImageDecoder& operator=(const ImageDecoder&) = delete;
  virtual ~ImageDecoder() = default;

  // Found without decoding. None for a broken file.
  [[nodiscard]] virtual std::optional<ImageSize> Size() = 0;

  // The first image with 1, 8 or 32 bits, the top row first; the fourth bytes of palette and pixels are the
  // alpha as the file has it, and hasAlpha is left alone. None when nothing of it can be read. To be called
  // once, behind Size.
  [[nodiscard]] virtual std::optional<DecodedImage> Decode() = 0;
};

// A file that is there. Null when it is no PNG, JPEG, BMP, TIFF or GIF, or cannot be opened.
[[nodiscard]] std::unique_ptr<ImageDecoder> OpenImage(const std::filesystem::path& file);

}  // namespace hdiplot
