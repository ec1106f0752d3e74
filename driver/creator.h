// The name of the plotting application.
#pragma once

#include <string>
#include <string_view>

namespace hdi {

// Returns the name of the running process, for the document's "Creator".
[[nodiscard]] std::u16string CreatorName();

// Returns the name for a process's file `path`: on Windows the text between the last backslash and the last
// dot, "CAD" if either is missing, and empty if they are in reverse order; elsewhere the base name without
// its last extension, "CAD" for an empty path.
[[nodiscard]] std::u16string CreatorOf(std::u16string_view path);

}  // namespace hdi
