// Pictures as PNG files in memory: the system's library that makes them would not tell of a full disk.
#pragma once

#include <cstdint>
#include <vector>

#include "engine/preview.h"

namespace hdiplot {

// Throws std::bad_alloc, as nothing else can fail.
[[nodiscard]] std::vector<uint8_t> EncodePng(const hdi::engine::PagePicture& picture, int dotsPerInch);

}  // namespace hdiplot
