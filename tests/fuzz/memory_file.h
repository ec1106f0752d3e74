// An input as a file, for parsers that take paths.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "tests/fuzz/fuzz_target.h"

namespace fuzzing {

// In memory; removed with the object.
class MemoryFile {
 public:
  MemoryFile(const uint8_t* data, size_t size) : descriptor_(memfd_create("input", MFD_CLOEXEC)) {
    const ssize_t written = write(descriptor_, data, size);
    Require(written == static_cast<ssize_t>(size), "cannot write", Path().native());
  }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile() { close(descriptor_); }

  [[nodiscard]] std::filesystem::path Path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

 private:
  int descriptor_;
};

}  // namespace fuzzing
