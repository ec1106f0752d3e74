// Converts UTF-16 to the engine's wide strings, whose units have the width of wchar_t.
#include "engine/wide_string.h"

#include <string>

namespace hdi::engine {

WideString ToWideString(std::u16string_view text) {
  std::string littleEndian;
  littleEndian.reserve(text.size() * 2);
  for (const char16_t unit : text) {
    littleEndian.push_back(static_cast<char>(unit & 0xFF));
    littleEndian.push_back(static_cast<char>(unit >> 8));
  }
  return WideString::FromUTF16LE(
      {reinterpret_cast<const uint8_t*>(littleEndian.data()), littleEndian.size()});
}

}  // namespace hdi::engine
