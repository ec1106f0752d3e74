// Drawings of the command line.
#pragma once

#include <filesystem>
#include <optional>

#include "hdiplot/dxf/dxf_reader.h"

namespace hdiplot {

// The drawing in the file; none when it cannot be read, which is printed as an error then. What is lost of a
// drawing is printed, too.
[[nodiscard]] std::optional<Drawing> ReadOrReport(const std::filesystem::path& file, Strictness strictness,
                                                  Progress& progress);

}  // namespace hdiplot
