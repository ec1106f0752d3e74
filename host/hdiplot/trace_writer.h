// Writing plot traces.
#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "host/hdiplot/trace.h"

namespace hdiplot {

// A trace file in the making. It is written beside its place, to which symbolic links are followed, under a
// temporary name and takes its place when it is whole, so a failure leaves no half trace and no changed one.
class TraceWriter {
 public:
  // Throws InputError when the file cannot be made or replaced.
  explicit TraceWriter(std::filesystem::path file);
  TraceWriter(const TraceWriter&) = delete;
  TraceWriter& operator=(const TraceWriter&) = delete;
  ~TraceWriter();

  // At most once, before the first call.
  void WriteJob(const JobSettings& job);
  void WriteCall(const Call& call);

  // Puts the file in its place. Throws InputError when something could not be written, a number that is not
  // finite included.
  void Finish();

 private:
  struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  void EndLine();

  std::filesystem::path file_;       // as the user names it
  std::filesystem::path place_;      // where symbolic links lead
  std::filesystem::path temporary_;  // empty when there is none any more
  std::unique_ptr<std::FILE, CloseFile> stream_;
  std::string line_;
  std::string problem_;  // the first thing that went wrong
};

}  // namespace hdiplot
