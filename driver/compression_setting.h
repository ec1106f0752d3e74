// How the user wants streams compressed.
#pragma once

#include <string>

#include "engine/compression.h"

namespace hdi {

// What the environment variable HDI_COMPRESSION says, or else the key "Compression" in `section` of `file`:
// "fast", "normal" or "small". Any other word, and none, is "normal".
[[nodiscard]] engine::Compression CompressionSetting(const std::u16string& section,
                                                     const std::u16string& file);

}  // namespace hdi
