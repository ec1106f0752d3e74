// An input as a file, for readers that take paths.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <string>

namespace fuzzing {

// Lives in memory, as long as the object does.
class MemoryFile {
 public:
  MemoryFile(const uint8_t* data, size_t size) : descriptor_(memfd_create("input", MFD_CLOEXEC)) {
    while (size > 0) {
      const ssize_t written = write(descriptor_, data, size);
      if (written <= 0) break;
      data += written;
      size -= static_cast<size_t>(written);
    }
  }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile() { close(descriptor_); }

  [[nodiscard]] std::filesystem::path Path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

 private:
  int descriptor_;
};

}  // namespace fuzzing
