// The name of the application that plots.
#pragma once

#include <string>
#include <string_view>

namespace hdi {

// The running process's name, as the document's "Creator".
[[nodiscard]] std::u16string CreatorName();

// The same for the process's file `path`: on Windows the text between the last backslash and the last dot,
// "CAD" when either is missing, and empty when they come the other way round; elsewhere the base name without
// its last extension, "CAD" for an empty path.
[[nodiscard]] std::u16string CreatorOf(std::u16string_view path);

}  // namespace hdi
