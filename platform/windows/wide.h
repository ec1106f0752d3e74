// Converts between wchar_t and char16_t, which are both 16-bit units on this platform.
#pragma once

#include <string>

namespace hdi {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

[[nodiscard]] inline const wchar_t* Wide(const char16_t* text) {
  return reinterpret_cast<const wchar_t*>(text);
}
[[nodiscard]] inline wchar_t* Wide(char16_t* text) { return reinterpret_cast<wchar_t*>(text); }
[[nodiscard]] inline const wchar_t* Wide(const std::u16string& text) { return Wide(text.c_str()); }

[[nodiscard]] inline const char16_t* Units(const wchar_t* text) {
  return reinterpret_cast<const char16_t*>(text);
}

}  // namespace hdi
