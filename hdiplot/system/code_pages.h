// Text in the code pages of older drawings.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace hdiplot {

// Code pages have the names "CP932", "ISO8859-1", "MACINTOSH" and the like, in capitals.
[[nodiscard]] bool KnowsCodePage(const std::string& name);

// As UTF-8; bytes that mean nothing in the code page become U+FFFD. None for an unknown code page.
[[nodiscard]] std::optional<std::string> FromCodePage(std::string_view bytes, const std::string& codePage);

}  // namespace hdiplot
