// Names as users write them: patterns with wildcards, and comparison without regard to case.
#pragma once

#include <string>
#include <string_view>

namespace hdiplot {

// UTF-8 text in upper case, as far as ASCII, Latin-1, Greek and Cyrillic go, in 16-bit units.
[[nodiscard]] std::u16string FoldedCase(std::string_view text);

// Whether the whole of `name` fits `pattern`, in which * stands for any run of characters and ? for one.
// Both come from FoldedCase.
[[nodiscard]] bool MatchesWildcard(std::u16string_view pattern, std::u16string_view name);

}  // namespace hdiplot
