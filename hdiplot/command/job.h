// One job on one driver, whatever is plotted in it: the settings, the document's start and end, the recorded
// trace and the output file.
#pragma once

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <optional>

#include "hdiplot/command/options.h"
#include "hdiplot/command/report.h"
#include "hdiplot/device/plot_device.h"
#include "hdiplot/system/progress.h"
#include "hdiplot/trace/trace.h"
#include "hdiplot/trace/trace_writer.h"

namespace hdiplot {

class Job {
 public:
  // Puts the settings into the driver's record, opens its device and starts the document. The command line's
  // output goes before that of the settings. Throws a std::runtime_error with the message for the user when
  // the output cannot be written or the driver refuses, and has touched no file then.
  Job(hdi::HT_Driver& driver, const JobSettings& settings, const CommandLine& line);

  [[nodiscard]] PlotDevice& Device() { return *device_; }

  // Ends the document, closes the device and looks at what has been written. Throws a std::runtime_error when
  // the output is not whole.
  void Finish();

  // Behind Finish: puts the recorded trace, if there is one, in its place. Throws FileError.
  void FinishRecord();

  // Behind Finish: writes the picture that the command line asks for. Throws FileError.
  void FinishPreview(const CommandLine& line) const;

  // Behind Finish; without the time.
  [[nodiscard]] const PlotSummary& Summary() const { return summary_; }

 private:
  void CheckFiles(const CommandLine& line) const;
  void CheckPreview(const CommandLine& line) const;

  std::optional<std::filesystem::path> file_;  // none when the driver asks the user for it
  std::optional<TraceWriter> recorder_;
  std::optional<PlotDevice> device_;
  PlotSummary summary_;
};

using Clock = std::chrono::steady_clock;

// Finishes the job, the progress bar, the record and the preview, and prints the summary with the time since
// `start`. A record or a preview that cannot be written is reported and makes the job partly done.
[[nodiscard]] ExitStatus Conclude(Job& job, const CommandLine& line, Clock::time_point start,
                                  Progress& progress);

// Where the summary goes: standard output, or standard error when results are printed there; null when quiet.
[[nodiscard]] std::FILE* SummaryStream(const CommandLine& line);

}  // namespace hdiplot
