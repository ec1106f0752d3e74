// The page's measure, by which a reader tells lengths of the drawing.
#pragma once

#include "engine/page.h"

namespace hdi {

// Writes the page's viewport with `scale` as the factor of its measure, in place of one that is there. What
// is not a number counts as 0, and what lies beyond 64 bits as the largest factor within them.
void SetPageViewport(engine::Page& page, float scale);

}  // namespace hdi
