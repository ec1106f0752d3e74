// Cutting a text, narrow or wide, at separators and blanks.
#pragma once

#include <algorithm>
#include <string_view>

namespace hdiplot {

// White space of ASCII.
[[nodiscard]] constexpr bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// `text` without the white space at its ends. Made for the lines of a large file.
[[nodiscard]] constexpr std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

// `text` without the `blanks` at its ends.
template <typename Char>
[[nodiscard]] std::basic_string_view<Char> Trimmed(std::basic_string_view<Char> text,
                                                   std::basic_string_view<Char> blanks) {
  const size_t first = text.find_first_not_of(blanks);
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

// Removes and returns what precedes the separator, and removes the separator. All of the text if there is
// none.
template <typename Char>
std::basic_string_view<Char> TakePart(std::basic_string_view<Char>& text, Char separator) {
  const size_t end = std::min(text.find(separator), text.size());
  const std::basic_string_view<Char> part = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return part;
}

}  // namespace hdiplot
