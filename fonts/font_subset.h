// Calls the platform's font subsetter.
#pragma once

#include <cstdint>
#include <span>

#include "fonts/font_data.h"
#include "platform/font_subsetter.h"

namespace hdi {

// Returns the font in `bytes`, reduced to the characters of `keepList`, which must be ascending. `source`
// selects the member of a collection. The block is null without a subsetter or if it makes no subset.
[[nodiscard]] FontData SubsetFontData(CreateFontPackageFunction* createFontPackage,
                                      std::span<const uint8_t> bytes, const FontDataSource& source,
                                      std::span<const uint16_t> keepList);

}  // namespace hdi
