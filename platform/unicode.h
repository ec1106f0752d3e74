// Conversions between UTF-16 and UTF-8. Total: an unpaired surrogate or a malformed byte becomes U+FFFD.
#pragma once

#include <string>
#include <string_view>

namespace hdi {

[[nodiscard]] std::string ToUtf8(std::u16string_view text);
[[nodiscard]] std::u16string ToUtf16(std::string_view text);

}  // namespace hdi
