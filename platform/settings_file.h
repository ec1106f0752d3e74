// Settings files in the format of the platform's private profiles: sections in brackets, `key=value` lines,
// names compared ignoring case, values trimmed and without one pair of quotes; comment lines start with a
// semicolon.
//
// A file is UTF-16LE with a byte order mark, otherwise UTF-8 or, on Windows, where the platform's own
// functions read and write it, in the system's code page.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace hdi {

// Returns the value of `key` in `section` of `file`, or `fallback` if the file, the section or the key is
// missing, truncated to 255 units. A key with an empty value returns an empty string.
[[nodiscard]] std::u16string ReadSetting(const std::u16string& section, const std::u16string& key,
                                         const std::u16string& fallback, const std::u16string& file);

// Sets `key` in `section` of `file`, creating what is missing and keeping every other line. Returns whether
// the file now holds the value.
bool WriteSetting(const std::u16string& section, const std::u16string& key, const std::u16string& value,
                  const std::u16string& file);

// Returns the section names of `file` in file order, with repetitions; empty without the file.
[[nodiscard]] std::vector<std::u16string> SettingSections(const std::u16string& file);

// Parses the leading decimal number of `text` after blanks and a sign, clamped to i32; 0 if there is none.
[[nodiscard]] int32_t SettingToInt(const std::u16string& text);

}  // namespace hdi
