// Files and directories. Paths are the platform's, as UTF-16.
#pragma once

#include <cstddef>
#include <string>

namespace hdi {

// Separates directories and names.
#if defined(_WIN32)
inline constexpr char16_t kPathSeparator = u'\\';
#else
inline constexpr char16_t kPathSeparator = u'/';
#endif

// Returns whether a file, a directory or a disk exists at `path`. Terminals, pipes and other streams do not
// count: output goes to them without replacing anything.
[[nodiscard]] bool FileExists(const std::u16string& path);

// Removes a file; returns whether it is gone. Directories and devices stay, and on Windows files that another
// process has open without sharing.
bool RemoveFile(const std::u16string& path);

// Returns the directory for temporary files, with or without a trailing separator; empty if there is none.
[[nodiscard]] std::u16string TemporaryDirectory();

// Creates the last directory of `path`. Failures, as when it exists, are not reported.
void MakeDirectory(const std::u16string& path);

// A file for sequential writing. Initially closed; the destructor closes it.
class OutputFile {
 public:
  OutputFile() = default;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

  // Creates `path`, or opens an existing file without truncating it. Returns whether it is open.
  [[nodiscard]] bool Open(const std::u16string& path);
  [[nodiscard]] bool IsOpen() const;
  void Close();  // failures are not reported

  // Appends the block. A full disk (no space, quota, or the process's file size limit) is not reported: what
  // fits is written and the rest of the block is lost. Any other failure throws std::system_error with the
  // path.
  void Write(const void* data, size_t size);

 private:
#if defined(_WIN32)
  void* handle_ = nullptr;
#else
  static constexpr int kClosed = -1;
  int descriptor_ = kClosed;
#endif
  std::u16string path_;  // for Write's exceptions
};

}  // namespace hdi
