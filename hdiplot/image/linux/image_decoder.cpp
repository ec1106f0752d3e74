#include "hdiplot/image/image_file.h"
#include "hdiplot/image/linux/decoders.h"

namespace hdiplot {

std::unique_ptr<ImageDecoder> OpenImage(const std::filesystem::path& file) {
  FileStream stream = OpenToRead(file);
  const auto format = stream ? FormatOf(stream.get()) : std::nullopt;
  if (!format) return nullptr;
  switch (*format) {
    case ImageFormat::kPng:
      return OpenPng(std::move(stream));
    case ImageFormat::kJpeg:
      return OpenJpeg(std::move(stream));
    case ImageFormat::kBmp:
      return OpenBmp(std::move(stream));
    case ImageFormat::kTiff:
      return OpenTiff(std::move(stream));
    case ImageFormat::kGif:
      return OpenGif(std::move(stream));
  }
  return nullptr;
}

}  // namespace hdiplot
