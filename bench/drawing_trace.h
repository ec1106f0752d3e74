// Reads a plot trace as a scene.
#pragma once

#include <string>

#include "bench/scene.h"

namespace bench {

// Reads the trace of a job with one page as a page of steps. Coordinates are those of the trace, not whole
// dots; arcs become curves; layers, capabilities and calls that do not change an opaque drawing are dropped.
// Throws std::runtime_error if the file cannot be read or has calls that scenes cannot express.
[[nodiscard]] Scene ReadTrace(const std::string& path);

}  // namespace bench
