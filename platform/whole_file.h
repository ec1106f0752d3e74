// Files that are read and replaced as a whole: settings files.
#pragma once

#include <cstdint>
#include <string>

namespace hdi {

enum class LoadResult : uint8_t { kLoaded, kMissing, kUnreadable };

// Puts the content of `path` into `bytes`, of which nothing is to be used unless all of it has been loaded.
[[nodiscard]] LoadResult LoadWholeFile(const std::u16string& path, std::string& bytes);

// Replaces `path` by a file with that content in one step, so that a reader sees the old file or the new one;
// makes directories that are missing. Returns whether that was done.
[[nodiscard]] bool ReplaceWholeFile(const std::u16string& path, const std::string& bytes);

}  // namespace hdi
