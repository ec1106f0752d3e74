// Files that are written: checks of their place, and replacing them in one step.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "hdiplot/system/files.h"

namespace hdiplot {

// The file that the driver writes: `output` with ".pdf" appended unless it ends so, or `defaultOutput` as it
// is when there is no output. None when the driver asks the user. Neither given: an empty path.
[[nodiscard]] std::optional<std::filesystem::path> DriverOutput(const std::optional<std::u16string>& output,
                                                                const std::u16string& defaultOutput);

// Throws FileError when `file` cannot be created or replaced; leaves no trace. To be called before the
// document is started, which deletes the old file.
void RequireWritable(const std::filesystem::path& file);

// Throws FileError when `file` is not a complete PDF: the driver does not report a full disk.
void RequireComplete(const std::filesystem::path& file);

// Writes a file under a temporary name beside its place, to which symbolic links are followed. An existing
// file stays until Commit, and for good without it.
class FileReplacement {
 public:
  // Throws FileError when the file cannot be created or replaced.
  explicit FileReplacement(std::filesystem::path file);
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;
  ~FileReplacement();

  // The first failure makes Commit fail; nothing is written after it.
  void Write(std::string_view bytes);
  void Fail(std::string_view problem);

  // Moves the file to its place. Throws FileError when anything failed. At most once.
  void Commit();

 private:
  std::filesystem::path file_;       // as the user names it
  std::filesystem::path place_;      // where symbolic links lead
  std::filesystem::path temporary_;  // empty when it no longer exists
  FileStream stream_;
  std::string problem_;
};

}  // namespace hdiplot
