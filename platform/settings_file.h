// Settings files in the form of the platform's private profiles: sections in brackets, `key=value` lines,
// names compared without regard to case, blanks around values and one pair of quotes around a value dropped,
// comment lines begin with a semicolon.
#pragma once

#include <cstdint>
#include <string>

namespace hdi {

// The value of `key` in `section` of `file`, cut at 255 units; `fallback` (cut likewise) when the file, the
// section or the key is missing. A key with an empty value gives the empty string.
[[nodiscard]] std::u16string ReadSetting(const std::u16string& section, const std::u16string& key,
                                         const std::u16string& fallback, const std::u16string& file);

// Sets `key` in `section` of `file`; makes what is missing and keeps every other line. Returns whether the
// file now holds the value.
bool WriteSetting(const std::u16string& section, const std::u16string& key, const std::u16string& value,
                  const std::u16string& file);

// The leading decimal number of `text` behind blanks and a sign, 0 when there is none, held at the ends of
// i32.
[[nodiscard]] int32_t SettingToInt(const std::u16string& text);

}  // namespace hdi
