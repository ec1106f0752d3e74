// Settings files in the form of the platform's private profiles: sections in brackets, `key=value` lines,
// names compared without regard to case, blanks around values and one pair of quotes around a value dropped,
// comment lines begin with a semicolon.
//
// A file is UTF-16LE with a byte order mark; without one it is UTF-8, and on Windows, where the platform's
// own functions read and write it, in the system's code page.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace hdi {

// The value of `key` in `section` of `file`, cut at 255 units; `fallback` (cut likewise) when the file, the
// section or the key is missing. A key with an empty value gives the empty string.
[[nodiscard]] std::u16string ReadSetting(const std::u16string& section, const std::u16string& key,
                                         const std::u16string& fallback, const std::u16string& file);

// Sets `key` in `section` of `file`; makes what is missing and keeps every other line. Returns whether the
// file now holds the value.
bool WriteSetting(const std::u16string& section, const std::u16string& key, const std::u16string& value,
                  const std::u16string& file);

// The names of the sections of `file` in the file's order, each as often as it is there; none without the
// file.
[[nodiscard]] std::vector<std::u16string> SettingSections(const std::u16string& file);

// The leading decimal number of `text` behind blanks and a sign, 0 when there is none, held at the ends of
// i32.
[[nodiscard]] int32_t SettingToInt(const std::u16string& text);

}  // namespace hdi
