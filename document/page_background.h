// The page background: a filled rectangle over the whole page, below everything else.
#pragma once

#include <cstdint>
#include <string>

#include "engine/page.h"

namespace hdi {

// Prepends the rectangle to the contents of `page`, outside any wrapping matrix, so it is in points. Does
// nothing for a component above 255 or a page without contents.
void SetPageBackground(engine::Page& page, uint32_t red, uint32_t green, uint32_t blue);

// The content stream of that rectangle for a page of `width` by `height` points.
[[nodiscard]] std::string PageBackgroundContent(uint32_t red, uint32_t green, uint32_t blue, float width,
                                                float height);

}  // namespace hdi
