// hdiplot: plots drawings and plot traces through the driver module.
#include <exception>
#include <string>
#include <vector>

#include "hdiplot/command/options.h"
#include "hdiplot/command/printing.h"
#include "hdiplot/device/module.h"
#include "hdiplot/system/process.h"

namespace {

using hdiplot::ExitStatus;

// `words`: the arguments.
ExitStatus Run(const hdiplot::CommandLine& line, const std::vector<std::string>& words) {
  hdiplot::FindInstalledData();
  // The settings record has no field for it; the driver reads the environment.
  if (!line.compression.empty()) hdiplot::SetEnvironmentVariable("HDI_COMPRESSION", line.compression);
  if (line.listPapers) return ListPapers(line);
  if (line.finishOnly) return FinishExistingPdf(line);
  if (line.list) return ListDrawings(line);
  if (line.each) return PlotEach(line, words);
  return line.isTrace ? PlotTrace(line) : PlotDrawings(line);
}

ExitStatus ParseAndRun(const std::vector<std::string>& words) {
  std::vector<const char*> pointers;
  pointers.reserve(words.size());
  for (const std::string& word : words) pointers.push_back(word.c_str());
  const hdiplot::ParsedArguments arguments =
      hdiplot::ParseArguments(static_cast<int>(pointers.size()), pointers.data());
  const ExitStatus status = arguments.commandLine
                                ? Run(*arguments.commandLine, {words.begin() + 1, words.end()})
                                : arguments.status;
  if (hdiplot::FlushStandardOutput()) return status;
  hdiplot::PrintError("standard output: cannot be written");
  const bool hasPlotted =
      arguments.commandLine && !arguments.commandLine->listPapers && !arguments.commandLine->list;
  return hasPlotted && status != ExitStatus::kNothingDone ? ExitStatus::kPartlyDone
                                                          : ExitStatus::kNothingDone;
}

}  // namespace

int main(int argc, char** argv) {
  hdiplot::PrepareProcess();
  ExitStatus status = ExitStatus::kNothingDone;
  try {
    status = ParseAndRun(hdiplot::CommandLineWords(argc, argv));
  } catch (const std::exception& error) {
    hdiplot::PrintError(error.what());
  } catch (...) {
    hdiplot::PrintError("unknown error");
  }
  return static_cast<int>(status);
}
