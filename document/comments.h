// Comments: what a reader finds where the host has drawn the words of a shape font as lines.
#pragma once

#include <cstdint>
#include <string_view>

#include "engine/page.h"

namespace hdi {

// Dots, as they are recorded.
struct CommentRectangle {
  int32_t left, right, bottom, top;
};

// Appends an annotation over the rectangle, with the text up to its first zero unit as its contents. A point
// of the page is `pointScale` times a dot plus the origin. `flags` are the annotation's (ISO 32000-1:2008,
// 12.5.3), not looked at.
void WriteShxComment(engine::Page& page, std::u16string_view text, const CommentRectangle& dots,
                     uint32_t flags, float pointScale, float originX, float originY);

}  // namespace hdi
