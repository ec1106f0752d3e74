// The page's measure, from which a reader computes lengths in the drawing.
#pragma once

#include "engine/page.h"

namespace hdi {

// Writes the page's viewport with `scale` as the factor of its measure, replacing an existing one. NaN counts
// as 0, and values beyond 64 bits as the largest factor that fits.
void SetPageViewport(engine::Page& page, float scale);

}  // namespace hdi
