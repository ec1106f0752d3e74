// Files as the C library has them, which tells why something fails, and what the standard library leaves to
// each system.
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

// Both open the bytes as they are. Null when they fail, with the reason in errno.
[[nodiscard]] FileStream OpenToRead(const std::filesystem::path& file);
[[nodiscard]] FileStream CreateNew(const std::filesystem::path& file);  // fails where there is a file

// Moves `from` to the place of `to`, where a file may be, in one step. What went wrong, or empty.
[[nodiscard]] std::string MoveOver(const std::filesystem::path& from, const std::filesystem::path& to);

// The file that `file` leads to through symbolic links; it need not exist.
[[nodiscard]] std::filesystem::path WithoutLinks(const std::filesystem::path& file);

// Whether both names lead to one file; it need not exist.
[[nodiscard]] bool LeadToSameFile(const std::filesystem::path& a, const std::filesystem::path& b);

}  // namespace hdiplot
