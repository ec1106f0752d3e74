// Case of ASCII letters, independent of the locale. Does not change other bytes, such as those of UTF-8.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace hdiplot {

[[nodiscard]] constexpr char ToLower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

[[nodiscard]] constexpr char ToUpper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

[[nodiscard]] inline std::string LowerCase(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(), ToLower);
  return lower;
}

[[nodiscard]] inline std::string UpperCase(std::string_view text) {
  std::string upper(text);
  std::ranges::transform(upper, upper.begin(), ToUpper);
  return upper;
}

[[nodiscard]] inline bool EqualWithoutCase(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, {}, ToLower, ToLower);
}

}  // namespace hdiplot
