// hdiplot: plots drawings and plot traces through the driver module.
#include <exception>

#include "host/hdiplot/job.h"
#include "host/hdiplot/options.h"
#include "host/hdiplot/plot_commands.h"

namespace {

hdiplot::ExitStatus Run(const hdiplot::CommandLine& line) {
  try {
    if (line.listPapers) return ListPapers(line);
    return line.isTrace ? PlotTrace(line) : PlotDrawings(line);
  } catch (const std::exception& error) {
    hdiplot::PrintError(error);
    return hdiplot::ExitStatus::kNothingDone;
  }
}

}  // namespace

int main(int argc, char** argv) {
  const hdiplot::ParsedArguments arguments = hdiplot::ParseArguments(argc, argv);
  return static_cast<int>(arguments.commandLine ? Run(*arguments.commandLine) : arguments.status);
}
