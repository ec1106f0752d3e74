// Case-insensitive names, of layers, blocks, styles and fonts. They are UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace hdiplot {

// The key of a name, by Unicode's simple case folding, independent of the locale. Has as many characters as
// the name. Bytes that are not UTF-8 become U+FFFD.
[[nodiscard]] std::string FoldedName(std::string_view name);

[[nodiscard]] bool IsSameName(std::string_view a, std::string_view b);

[[nodiscard]] bool IsUtf8(std::string_view text);

}  // namespace hdiplot
