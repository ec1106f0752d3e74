// The page's measure, by which a reader tells lengths of the drawing.
#pragma once

#include "engine/page.h"

namespace hdi {

// Writes the page's viewport with `scale` as the factor of its measure, in place of one that is there. False,
// and nothing, for a number that a PDF can't hold.
bool SetPageViewport(engine::Page& page, float scale);

}  // namespace hdi
