// The scene of a drawing.
#pragma once

#include <cstddef>

#include "bench/scene.h"

namespace bench {

// So many objects of copies of the site plan among the examples, scaled to tiles that fill an A0 sheet.
// Further copies lie over the first ones. Throws std::runtime_error when the plan's trace cannot be read.
[[nodiscard]] Scene TiledDrawing(size_t objectCount);

}  // namespace bench
