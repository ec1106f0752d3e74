// hdiplot: plots drawings and plot traces through the driver module.
#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <exception>

#include "host/hdiplot/options.h"
#include "host/hdiplot/plot_commands.h"
#include "host/hdiplot/printing.h"

namespace {

using hdiplot::ExitStatus;

// A file opened while a standard descriptor is closed would take its place, and get what is printed there.
void OpenClosedStandardDescriptors() {
  for (int opened = 0; opened >= 0 && opened <= STDERR_FILENO;) {
    opened = open("/dev/null", O_RDWR);
    if (opened > STDERR_FILENO) close(opened);
  }
}

ExitStatus Run(const hdiplot::CommandLine& line) {
  if (line.listPapers) return ListPapers(line);
  if (line.list) return ListDrawings(line);
  return line.isTrace ? PlotTrace(line) : PlotDrawings(line);
}

ExitStatus ParseAndRun(int argc, char** argv) {
  const hdiplot::ParsedArguments arguments = hdiplot::ParseArguments(argc, argv);
  const ExitStatus status = arguments.commandLine ? Run(*arguments.commandLine) : arguments.status;
  if (hdiplot::FlushStandardOutput()) return status;
  hdiplot::PrintError("standard output: cannot be written");
  const bool hasPlotted =
      arguments.commandLine && !arguments.commandLine->listPapers && !arguments.commandLine->list;
  return hasPlotted && status != ExitStatus::kNothingDone ? ExitStatus::kPartlyDone
                                                          : ExitStatus::kNothingDone;
}

}  // namespace

int main(int argc, char** argv) {
  OpenClosedStandardDescriptors();
  // Writing to what cannot take it fails, and is reported, instead of ending the process in the middle.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  ExitStatus status = ExitStatus::kNothingDone;
  try {
    status = ParseAndRun(argc, argv);
  } catch (const std::exception& error) {
    hdiplot::PrintError(error.what());
  } catch (...) {
    hdiplot::PrintError("an unknown error");
  }
  return static_cast<int>(status);
}
