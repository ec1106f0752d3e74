// Names of layers, blocks, styles and fonts, which are the same in any case. They are UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace hdiplot {

// What names are kept and compared by: each character by Unicode's simple case folding, whatever the locale,
// so that no name becomes longer in characters. Bytes that are not UTF-8 become U+FFFD.
[[nodiscard]] std::string FoldedName(std::string_view name);

[[nodiscard]] bool IsSameName(std::string_view a, std::string_view b);

[[nodiscard]] bool IsUtf8(std::string_view text);

}  // namespace hdiplot
