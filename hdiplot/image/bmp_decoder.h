// BMP files of all depths, packed in runs or not.
#pragma once

#include <memory>

#include "hdiplot/image/image_decoder.h"
#include "hdiplot/system/files.h"

namespace hdiplot {

[[nodiscard]] std::unique_ptr<ImageDecoder> OpenBmp(FileStream file);

}  // namespace hdiplot
