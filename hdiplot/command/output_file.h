// Where the driver puts the PDF, and whether it can.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace hdiplot {

// The name that makes the driver ask the user for the file, in any case.
[[nodiscard]] bool AsksForFile(const std::u16string& output);

// The file that the driver writes: `output` with ".pdf" behind it unless it ends so, or `defaultOutput` as it
// stands when there is no output. None when the driver asks the user. Neither given: an empty path.
[[nodiscard]] std::optional<std::filesystem::path> OutputFile(const std::optional<std::u16string>& output,
                                                              const std::u16string& defaultOutput);

// Throws FileError when the directory of `file` is missing, or `file` is there and no regular file.
void RequireReplaceable(const std::filesystem::path& file);

// Throws FileError when `file` cannot be made or replaced. Starting a document deletes the old file, so this
// is found out before, and leaves everything as it was.
void RequireWritable(const std::filesystem::path& file);

// Throws FileError when `file` is not a whole PDF; the driver says nothing when the disk is full.
void RequireComplete(const std::filesystem::path& file);

}  // namespace hdiplot
