// Reading the drawings of a command line.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <span>
#include <string>

#include "hdiplot/command/options.h"
#include "hdiplot/dxf/dxf_reader.h"

namespace hdiplot {

// The drawing in the file, a DXF or, by way of a converter, a DWG; none when it cannot be read. What is wrong
// is printed.
[[nodiscard]] std::optional<Drawing> ReadOrReport(const std::filesystem::path& file, const CommandLine& line,
                                                  Progress& progress);

struct ListedLayer {
  std::string name;  // as the drawing spells it first
  Layer layer;
};

// The layers of the drawings by folded name, those without an entry in the table of layers included.
[[nodiscard]] std::map<std::string, ListedLayer> LayersOf(std::span<const Drawing> drawings);

}  // namespace hdiplot
