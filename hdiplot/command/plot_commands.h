// What the command does, by kind of input.
#pragma once

#include "hdiplot/command/options.h"

namespace hdiplot {

// Each reads its input, then loads the module, plots, and prints the summary. What makes the whole command
// fail comes as a std::runtime_error with the message; everything else is printed, and told by the status.
[[nodiscard]] ExitStatus PlotTrace(const CommandLine& line);
[[nodiscard]] ExitStatus PlotDrawings(const CommandLine& line);

// Prints what is in each drawing: its spaces with their entities, and its layers.
[[nodiscard]] ExitStatus ListDrawings(const CommandLine& line);

// Prints the papers of the device.
[[nodiscard]] ExitStatus ListPapers(const CommandLine& line);

}  // namespace hdiplot
