// A trace, read and played through the driver into a PDF. A trace that can be read must end in a file that is
// whole.
#include <unistd.h>

#include <filesystem>
#include <string>

#include "driver/pdf_driver.h"
#include "host/hdiplot/errors.h"
#include "host/hdiplot/job.h"
#include "host/hdiplot/options.h"
#include "host/hdiplot/trace_player.h"
#include "host/hdiplot/trace_reader.h"
#include "platform/unicode.h"
#include "tests/fuzz/fuzz_target.h"
#include "tests/fuzz/memory_file.h"

namespace {

using namespace hdiplot;

// One of each process, as several may fuzz at a time.
const std::u16string& OutputName() {
  static const std::u16string kName = hdi::ToUtf16(
      (std::filesystem::temp_directory_path() / ("fuzz_trace." + std::to_string(getpid()) + ".pdf"))
          .string());
  return kName;
}

void PlayTrace(Trace& trace) {
  // The file is the target's and nobody else's.
  trace.job.output.reset();
  trace.job.defaultOutput = OutputName();
  hdi::CPDFDriver driver(u"fuzz");
  Job job(driver, trace.job, CommandLine{});
  TracePlayer player(job.Device());
  for (CallLine& line : trace.calls) player.Play(line.call);
  driver.GetDevModePointer()->openAfterPlot = 0;
  job.Finish();
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
  std::filesystem::remove(hdi::ToUtf8(OutputName()));
  return 0;
}
