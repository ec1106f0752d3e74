// UTF-16 and UTF-8 on Windows.
#include "platform/unicode.h"

#include <windows.h>

#include "platform/windows/wide.h"

namespace hdi {

std::string ToUtf8(std::u16string_view text) {
  // A unit takes at most three bytes; a surrogate pair takes four.
  std::string bytes(text.size() * 3, '\0');
  const int length = WideCharToMultiByte(CP_UTF8, 0, Wide(text.data()), static_cast<int>(text.size()),
                                         bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr);
  bytes.resize(static_cast<size_t>(length));
  return bytes;
}

std::u16string ToUtf16(std::string_view text) {
  // No byte, malformed or not, yields more than one unit.
  std::u16string units(text.size(), u'\0');
  const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                         Wide(units.data()), static_cast<int>(units.size()));
  units.resize(static_cast<size_t>(length));
  return units;
}

bool SameName(std::u16string_view a, std::u16string_view b) {
  if (a.size() != b.size() || a.empty()) return a.size() == b.size();
  return CompareStringOrdinal(Wide(a.data()), static_cast<int>(a.size()), Wide(b.data()),
                              static_cast<int>(b.size()), TRUE) == CSTR_EQUAL;
}

}  // namespace hdi
