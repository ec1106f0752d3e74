// Reads a plot trace as a scene.
#pragma once

#include <string>

#include "bench/scene.h"

namespace bench {

// What the trace of a job of one page draws, as one page of steps. Coordinates are as in the trace, not whole
// dots; arcs become curves; layers and capabilities are left out, and so is what does not change the picture
// of an opaque drawing. Throws std::runtime_error when the file cannot be read or has calls that the scenes
// cannot express.
[[nodiscard]] Scene ReadTrace(const std::string& path);

}  // namespace bench
