// The decoders that use the system's libraries.
#pragma once

#include <memory>

#include "hdiplot/image/image_file.h"
#include "hdiplot/system/files.h"

namespace hdiplot {

// Each takes a file of its format, at its start.
[[nodiscard]] std::unique_ptr<ImageDecoder> OpenPng(FileStream file);
[[nodiscard]] std::unique_ptr<ImageDecoder> OpenJpeg(FileStream file);
[[nodiscard]] std::unique_ptr<ImageDecoder> OpenGif(FileStream file);
[[nodiscard]] std::unique_ptr<ImageDecoder> OpenTiff(FileStream file);

}  // namespace hdiplot
