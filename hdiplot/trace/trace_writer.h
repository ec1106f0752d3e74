// Writing plot traces.
#pragma once

#include <filesystem>
#include <string>

#include "hdiplot/device/plot_device.h"
#include "hdiplot/system/output_file.h"
#include "hdiplot/trace/trace.h"

namespace hdiplot {

// A trace file in the making, for a device to listen to. It takes its place when it is complete; without
// Finish there is no trace and no change to an existing one.
class TraceWriter final : public CallListener {
 public:
  // Throws FileError when the file cannot be created or replaced.
  explicit TraceWriter(const std::filesystem::path& file) : file_(file) {}

  // At most once, before the first call.
  void WriteJob(const JobSettings& job);
  void OnCall(const Call& call) override;

  // Moves the file to its place. Throws FileError when anything could not be written, such as a number that
  // is not finite.
  void Finish() { file_.Commit(); }

 private:
  void EndLine();

  FileReplacement file_;
  std::string line_;  // kept for its memory
};

}  // namespace hdiplot
