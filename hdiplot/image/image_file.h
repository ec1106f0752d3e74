// Reading the image files that drawings refer to, and the decoders that do it: the system's libraries, and
// code of our own for BMP.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>

#include "hdiplot/device/raster.h"
#include "hdiplot/system/files.h"

namespace hdiplot {

struct DecodedImage {
  ImageData image;
  bool isWhole = true;  // false: the file is truncated or damaged, and what is missing is white
};

// The first image of a PNG, JPEG, BMP, TIFF or GIF file, whatever the file's extension, top row first. Images
// of up to 8 bits keep 1 or 8 bits with a palette, whose fourth byte is the alpha; all others have 32 bits,
// the fourth byte their alpha. Throws FileError for a file that is missing, of another format, larger than a
// plot takes, or so broken that nothing of the image can be read.
[[nodiscard]] DecodedImage ReadImageFile(const std::filesystem::path& file);

enum class ImageFormat { kPng, kJpeg, kBmp, kTiff, kGif };

// By the first bytes of the file, where it is left. None for any other file.
[[nodiscard]] std::optional<ImageFormat> FormatOf(std::FILE* file);

struct ImageSize {
  uint64_t width = 0;
  uint64_t height = 0;
  uint64_t bits = 0;  // per pixel, while it is decoded
};

class ImageDecoder {
 public:
  ImageDecoder() = default;
  ImageDecoder(const ImageDecoder&) = delete;
  ImageDecoder& operator=(const ImageDecoder&) = delete;
  virtual ~ImageDecoder() = default;

  // Read without decoding pixels. None for a broken file.
  [[nodiscard]] virtual std::optional<ImageSize> Size() = 0;

  // The first image with 1, 8 or 32 bits, top row first; the fourth bytes of palette and pixels are the
  // file's alpha, and hasAlpha is not set. None when nothing of it can be read. To be called once, after
  // Size.
  [[nodiscard]] virtual std::optional<DecodedImage> Decode() = 0;
};

// The system's decoder for an existing file. Null when it is of another format, or cannot be opened.
[[nodiscard]] std::unique_ptr<ImageDecoder> OpenImage(const std::filesystem::path& file);

// BMP files of all depths, run-length encoded or not.
[[nodiscard]] std::unique_ptr<ImageDecoder> OpenBmp(FileStream file);

}  // namespace hdiplot
