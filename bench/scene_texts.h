// The scene of texts.
#pragma once

#include <cstddef>

#include "bench/scene.h"

namespace bench {

// This many texts of 8 to 30 characters, with words as in drawings, each within the drawing area.
[[nodiscard]] Scene RandomTexts(size_t count);

}  // namespace bench
