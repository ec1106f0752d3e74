// Settings files are read and replaced as a whole.
#pragma once

#include <cstdint>
#include <string>

namespace hdi {

enum class LoadResult : uint8_t { kLoaded, kMissing, kUnreadable };

// Reads `path` into `bytes`, which must not be used unless the result is kLoaded.
[[nodiscard]] LoadResult LoadWholeFile(const std::u16string& path, std::string& bytes);

// Replaces `path` atomically by a file with these bytes, creating missing directories. Returns whether it
// succeeded.
[[nodiscard]] bool ReplaceWholeFile(const std::u16string& path, const std::string& bytes);

}  // namespace hdi
