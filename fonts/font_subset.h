// Calls the platform's subsetter.
#pragma once

#include <cstdint>
#include <span>

#include "fonts/font_data.h"
#include "platform/font_subsetter.h"

namespace hdi {

// The font of `bytes`, cut down to the characters of `keepList`, which is ascending; no block when there is
// no subsetter or it makes no subset. `memberIndex` tells the font in a collection.
[[nodiscard]] FontData SubsetFontData(CreateFontPackageFunction* createFontPackage,
                                      std::span<const uint8_t> bytes, const FontDataSource& source,
                                      std::span<const uint16_t> keepList);

}  // namespace hdi
