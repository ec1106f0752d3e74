// Playing a trace from the command line.
#include <fmt/format.h>

#include "hdiplot/command/finishing.h"
#include "hdiplot/command/job.h"
#include "hdiplot/command/options.h"
#include "hdiplot/command/printing.h"
#include "hdiplot/device/module.h"
#include "hdiplot/system/progress.h"
#include "hdiplot/trace/trace.h"
#include "platform/unicode.h"

namespace hdiplot {

namespace {

void PrintResult(const CallLine& line, int64_t result) {
  const auto name = std::visit([]<typename T>(const T&) { return T::kEntry.name; }, line.call);
  PrintLine(stdout, fmt::format("{} {} {}", line.line, name, result));
}

}  // namespace

ExitStatus PlotTrace(const CommandLine& line) {
  const Clock::time_point start = Clock::now();
  Progress progress(ProgressFor(line.verbosity));
  Trace trace = ReadTrace(line.inputs.front());
  if (!line.device.empty()) trace.job.device = hdi::ToUtf16(line.device);
  const Module module(line.module);
  const FinishOptions finish = ResolveFinish(line, {});
  Job job(module.Driver(trace.job.device), trace.job, line);

  progress.Start(trace.calls.size());
  for (size_t i = 0; i < trace.calls.size(); ++i) {
    const int64_t result = job.Device().Make(trace.calls[i].call);
    if (line.results) PrintResult(trace.calls[i], result);
    progress.Advance(i + 1);
  }
  return Conclude(job, line, finish, start, progress);
}

}  // namespace hdiplot
