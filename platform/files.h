// Files and directories, as the driver needs them. Paths are the platform's, as UTF-16.
#pragma once

#include <cstddef>
#include <string>

namespace hdi {

// Joins directories and names: a backslash on Windows, a slash elsewhere.
#if defined(_WIN32)
inline constexpr char16_t kPathSeparator = u'\\';
#else
inline constexpr char16_t kPathSeparator = u'/';
#endif

// Whether a file, a directory or a disk lies at `path`. Terminals, pipes and other streams do not count:
// output goes to them, and nothing has to make way for it.
[[nodiscard]] bool FileExists(const std::u16string& path);

// Whether the file is gone. What is no file (a directory, a device) stays, and so does a file that another
// process holds open without sharing (Windows).
bool RemoveFile(const std::u16string& path);

// The directory for temporary files, with or without a separator at its end; empty when there is none.
[[nodiscard]] std::u16string TemporaryDirectory();

// Makes the last directory of `path`; a failure (it may exist) is not reported.
void MakeDirectory(const std::u16string& path);

// A file that takes blocks of bytes one after the other. Closed at first; the destructor closes.
class OutputFile {
 public:
  OutputFile() = default;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

  // Creates `path`, or opens an existing file without emptying it, for writing. Returns whether it is open.
  [[nodiscard]] bool Open(const std::u16string& path);
  [[nodiscard]] bool IsOpen() const;
  void Close();  // what it fails with is not reported

  // Writes the whole block at the file's end so far. A full disk (no space, quota, or the process's file size
  // limit) is silent: what fits is written and the rest of the block is lost. Any other failure throws
  // std::system_error with the path.
  void Write(const void* data, size_t size);

 private:
#if defined(_WIN32)
  void* handle_ = nullptr;
#else
  static constexpr int kClosed = -1;
  int descriptor_ = kClosed;
#endif
  std::u16string path_;  // for the error that Write throws
};

}  // namespace hdi
