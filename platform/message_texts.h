// The driver's string table in the user's language: English, Traditional Chinese, Simplified Chinese or
// Japanese.
#pragma once

#include <cstdint>
#include <string>

namespace hdi {

inline constexpr uint32_t kTextFileInUse = 4007;     // follows the file's path; starts with a blank
inline constexpr uint32_t kTextBitmapFailed = 4011;  // in the table, but never shown

// Returns the text of `id`, or an empty string if the table lacks it. On Linux the language comes from
// LC_ALL, LC_MESSAGES or LANG, the first that is set and not empty.
[[nodiscard]] std::u16string MessageText(uint32_t id);

}  // namespace hdi
