// C streams, which report why an operation fails, and file operations that differ between systems.
#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

namespace hdiplot {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using FileStream = std::unique_ptr<std::FILE, CloseFile>;

// Both open binary streams. Null on failure, with the reason in errno.
[[nodiscard]] FileStream OpenToRead(const std::filesystem::path& file);
[[nodiscard]] FileStream CreateNew(const std::filesystem::path& file);  // fails where there is a file

// Atomically replaces `to`, which need not exist, by `from`. Returns the error, or an empty string.
[[nodiscard]] std::string MoveOver(const std::filesystem::path& from, const std::filesystem::path& to);

// Resolves symbolic links. The file need not exist.
[[nodiscard]] std::filesystem::path WithoutLinks(const std::filesystem::path& file);

// Whether both paths refer to the same file, which need not exist.
[[nodiscard]] bool LeadToSameFile(const std::filesystem::path& a, const std::filesystem::path& b);

}  // namespace hdiplot
