// Text in the code pages of older drawings.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace hdiplot {

// Names are in capitals: "CP932", "ISO8859-1", "MACINTOSH".
[[nodiscard]] bool KnowsCodePage(const std::string& name);

// Converts to UTF-8; invalid bytes become U+FFFD. None for an unknown code page.
[[nodiscard]] std::optional<std::string> FromCodePage(std::string_view bytes, const std::string& codePage);

}  // namespace hdiplot
