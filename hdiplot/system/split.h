// Cutting a text, narrow or wide, at separators.
#pragma once

#include <algorithm>
#include <string_view>

namespace hdiplot {

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
