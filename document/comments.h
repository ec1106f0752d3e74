// Comments with the text of stroke fonts, which the host draws as lines.
#pragma once

#include <cstdint>
#include <string_view>

#include "engine/page.h"

namespace hdi {

// In dots, as recorded.
struct CommentRectangle {
  int32_t left, right, bottom, top;
};

// Adds an annotation over the rectangle whose contents are the text up to its first NUL. A page coordinate is
// `pointScale` times the dot plus the origin, in points. `flags` are the annotation's (ISO 32000-1:2008,
// 12.5.3), written unchecked.
void WriteShxComment(engine::Page& page, std::u16string_view text, const CommentRectangle& dots,
                     uint32_t flags, float pointScale, float originX, float originY);

}  // namespace hdi
