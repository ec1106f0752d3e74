// Drawings of the command line.
#pragma once

#include <filesystem>
#include <optional>

#include "host/hdiplot/dxf/drawing.h"

namespace hdiplot {

// The drawing in the file; none when it cannot be read, which is printed as an error then.
[[nodiscard]] std::optional<Drawing> ReadOrReport(const std::filesystem::path& file);

}  // namespace hdiplot
