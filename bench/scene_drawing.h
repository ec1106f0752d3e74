// The scene of a drawing.
#pragma once

#include <cstddef>

#include "bench/scene.h"

namespace bench {

// This many objects from copies of the example site plan, scaled to tiles that fill an A0 sheet. Further
// copies overlap the first ones. Throws std::runtime_error if the plan's trace cannot be read.
[[nodiscard]] Scene TiledDrawing(size_t objectCount);

}  // namespace bench
