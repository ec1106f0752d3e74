// Conversions between UTF-16 and UTF-8, and comparing without regard to case.
#pragma once

#include <string>
#include <string_view>

namespace hdi {

// Total: an unpaired surrogate or a malformed byte becomes U+FFFD.
[[nodiscard]] std::string ToUtf8(std::u16string_view text);
[[nodiscard]] std::u16string ToUtf16(std::string_view text);

// Whether two names are the same without regard to case, as the platform folds it.
[[nodiscard]] bool SameName(std::u16string_view a, std::u16string_view b);

}  // namespace hdi
