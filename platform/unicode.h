// Conversion between UTF-16 and UTF-8, and comparison ignoring case.
#pragma once

#include <string>
#include <string_view>

namespace hdi {

// Never fail: unpaired surrogates and malformed bytes become U+FFFD.
[[nodiscard]] std::string ToUtf8(std::u16string_view text);
[[nodiscard]] std::u16string ToUtf16(std::string_view text);

// Returns whether two names are equal under the platform's case folding.
[[nodiscard]] bool SameName(std::u16string_view a, std::u16string_view b);

}  // namespace hdi
