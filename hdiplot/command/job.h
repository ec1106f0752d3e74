// One plot job, of drawings or of a trace: settings, start and end of the document, output file, recorded
// trace and preview.
#pragma once

#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>

#include "hdiplot/command/options.h"
#include "hdiplot/command/printing.h"
#include "hdiplot/device/plot_device.h"
#include "hdiplot/trace/trace.h"
#include "hdiplot/trace/trace_writer.h"

namespace hdiplot {

class Job {
 public:
  // Puts the settings into the driver's record, opens its device and starts the document. The command line's
  // output overrides that of the settings. Throws a std::runtime_error with a message for the user, before
  // any file is changed, when an output cannot be written or the driver refuses.
  Job(hdi::HT_Driver& driver, const JobSettings& settings, const CommandLine& line);

  [[nodiscard]] PlotDevice& Device() { return *device_; }

  // Ends the document, closes the device and checks the output. Throws a std::runtime_error when the output
  // is not complete.
  void Finish();

  // After Finish: moves the recorded trace, if there is one, to its place. Throws FileError.
  void FinishRecord();

  // After Finish: writes the picture of the first page, if the command line asks for one. Throws FileError.
  void FinishPreview(const CommandLine& line) const;

  // After Finish; without the time.
  [[nodiscard]] const PlotSummary& Summary() const { return summary_; }

 private:
  void CheckFiles(const CommandLine& line) const;
  [[noreturn]] void Fail(const std::string& problem) const;  // with the output's name

  std::optional<std::filesystem::path> file_;  // none when the driver asks the user for it
  std::optional<TraceWriter> recorder_;
  std::optional<PlotDevice> device_;
  PlotSummary summary_;
};

// Where the summary goes: standard output, or standard error when standard output has results; null when
// quiet.
[[nodiscard]] std::FILE* SummaryStream(const CommandLine& line);

}  // namespace hdiplot
