// The user's compression setting.
#pragma once

#include <string>

#include "engine/compression.h"

namespace hdi {

// Returns the compression named by the environment variable HDI_COMPRESSION, or else by the key "Compression"
// in `section` of `file`: "fast", "normal" or "small". Anything else is "normal".
[[nodiscard]] engine::Compression CompressionSetting(const std::u16string& section,
                                                     const std::u16string& file);

}  // namespace hdi
