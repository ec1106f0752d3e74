// A decoder for each library.
#pragma once

#include <memory>

#include "hdiplot/image/image_file.h"
#include "hdiplot/system/files.h"

namespace hdiplot {

// Each takes a file that begins as its format does, and stands there.
[[nodiscard]] std::unique_ptr<ImageDecoder> OpenPng(FileStream file);
[[nodiscard]] std::unique_ptr<ImageDecoder> OpenJpeg(FileStream file);
[[nodiscard]] std::unique_ptr<ImageDecoder> OpenGif(FileStream file);
[[nodiscard]] std::unique_ptr<ImageDecoder> OpenTiff(FileStream file);

}  // namespace hdiplot
