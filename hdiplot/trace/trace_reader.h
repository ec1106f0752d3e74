// Reading plot traces.
#pragma once

#include <filesystem>

#include "hdiplot/trace/trace.h"

namespace hdiplot {

// Reads and checks the whole file. Every error is a FileError with the line and what is wrong with it: JSON
// or UTF-8 that is broken, a key that is unknown, missing or there twice, a value of the wrong type, size or
// range, an unknown call, a job line that is not the first.
[[nodiscard]] Trace ReadTrace(const std::filesystem::path& file);

}  // namespace hdiplot
