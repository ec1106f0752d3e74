// The form of a number in a content stream (ISO 32000-1:2008, 7.3.3).
#pragma once

#include <algorithm>
#include <string_view>

namespace fuzzing {

// Whether `text` is a minus or none, and digits with at most one point among them.
[[nodiscard]] inline bool IsPdfNumber(std::string_view text) {
  if (text.starts_with('-')) text.remove_prefix(1);
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  return std::ranges::any_of(text, isDigit) && std::ranges::count(text, '.') <= 1 &&
         std::ranges::all_of(text, [&](char c) { return isDigit(c) || c == '.'; });
}

}  // namespace fuzzing
