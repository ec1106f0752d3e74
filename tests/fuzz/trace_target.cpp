// Parses a trace and plays it through the driver. A valid trace must give a complete PDF file.
#include "driver/pdf_driver.h"
#include "hdiplot/command/job.h"
#include "hdiplot/command/options.h"
#include "hdiplot/system/errors.h"
#include "hdiplot/trace/trace.h"
#include "tests/fuzz/fuzz_target.h"
#include "tests/fuzz/memory_file.h"
#include "tests/support/scratch.h"

namespace {

using namespace hdiplot;

void PlayTrace(Trace& trace) {
  static const scratch::Directory kDirectory;  // of each process, as several may fuzz at a time
  trace.job.output.reset();
  trace.job.defaultOutput = kDirectory.Path16("plot.pdf");
  hdi::CPDFDriver driver(u"fuzz");
  Job job(driver, trace.job, CommandLine{});
  for (const CallLine& line : trace.calls) job.Device().Make(line.call);
  driver.GetDevModePointer()->openAfterPlot = 0;
  job.Finish();
  const std::string file = kDirectory.Read("plot.pdf");
  fuzzing::Require(file.starts_with("%PDF-") && file.ends_with("%%EOF\r\n"), "not whole", "plot.pdf");
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const fuzzing::MemoryFile file(data, size);
  Trace trace;
  try {
    trace = ReadTrace(file.Path());
  } catch (const FileError&) {
    return 0;
  }
  PlayTrace(trace);
  return 0;
}
