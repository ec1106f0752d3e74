// The scene of texts.
#pragma once

#include <cstddef>

#include "bench/scene.h"

namespace bench {

// So many texts of 8 to 30 characters of what stands in drawings, each whole within the drawing area.
[[nodiscard]] Scene RandomTexts(size_t count);

}  // namespace bench
