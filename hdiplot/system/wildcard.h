// Names as users write them: patterns with wildcards.
#pragma once

#include <string_view>

namespace hdiplot {

// Whether the whole of `name` fits `pattern`, in which * stands for any run of characters and ? for one.
// Both come from FoldedName.
[[nodiscard]] bool MatchesWildcard(std::string_view pattern, std::string_view name);

}  // namespace hdiplot
