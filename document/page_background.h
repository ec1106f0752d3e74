// The page's background: a filled rectangle over the whole page, below everything else.
#pragma once

#include <cstdint>
#include <string>

#include "engine/page.h"

namespace hdi {

// Puts the rectangle before the contents of `page`, outside of whatever wraps them, so it is in plain points.
// Does nothing for a component above 255 or a page without contents.
void SetPageBackground(engine::Page& page, uint32_t red, uint32_t green, uint32_t blue);

// The content of that stream for a page of `width` by `height` points.
[[nodiscard]] std::string PageBackgroundContent(uint32_t red, uint32_t green, uint32_t blue, float width,
                                                float height);

}  // namespace hdi
