// Patterns with wildcards, of names and of files.
#pragma once

#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

namespace hdiplot {

// Whether the whole of `name` matches `pattern`, in which * stands for any characters and ? for one. Both
// come from FoldedName.
[[nodiscard]] bool MatchesWildcard(std::string_view pattern, std::string_view name);

// The names in `directory` that match `pattern`, in any case, in alphabetical order. Empty with an error when
// the directory cannot be read.
[[nodiscard]] std::vector<std::filesystem::path> NamesMatching(const std::filesystem::path& directory,
                                                               std::string_view pattern,
                                                               std::error_code& error);

}  // namespace hdiplot
