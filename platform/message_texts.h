// The driver's string table, in the user's language: English, Traditional Chinese, Simplified Chinese,
// Japanese.
#pragma once

#include <cstdint>
#include <string>

namespace hdi {

inline constexpr uint32_t kTextFileInUse = 4007;     // shown behind the file's path; begins with a blank
inline constexpr uint32_t kTextBitmapFailed = 4011;  // in the table, shown by nothing

// The text of `id`, empty for an id that the table does not hold. On Linux the language comes from LC_ALL,
// LC_MESSAGES or LANG, the first that is set and not empty.
[[nodiscard]] std::u16string MessageText(uint32_t id);

}  // namespace hdi
