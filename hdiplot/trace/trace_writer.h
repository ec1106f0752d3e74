// Writing plot traces.
#pragma once

#include <filesystem>
#include <string>

#include "hdiplot/system/files.h"
#include "hdiplot/trace/trace.h"

namespace hdiplot {

// A trace file in the making. It is written beside its place, to which symbolic links are followed, under a
// temporary name and takes its place when it is whole, so a failure leaves no half trace and no changed one.
class TraceWriter {
 public:
  // Throws FileError when the file cannot be made or replaced.
  explicit TraceWriter(std::filesystem::path file);
  TraceWriter(const TraceWriter&) = delete;
  TraceWriter& operator=(const TraceWriter&) = delete;
  ~TraceWriter();

  // At most once, before the first call.
  void WriteJob(const JobSettings& job);
  void WriteCall(const Call& call);

  // Puts the file in its place. Throws FileError when something could not be written, a number that is not
  // finite included.
  void Finish();

 private:
  void EndLine();

  std::filesystem::path file_;       // as the user names it
  std::filesystem::path place_;      // where symbolic links lead
  std::filesystem::path temporary_;  // empty when there is none any more
  FileStream stream_;
  std::string line_;
  std::string problem_;  // the first thing that went wrong
};

}  // namespace hdiplot
