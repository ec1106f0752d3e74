// Code pages through the system's conversions, one character at a time: for longer texts these do not report
// where a byte is invalid.
#include "hdiplot/system/code_pages.h"

#include <windows.h>

#include <charconv>
#include <utility>

#include "platform/unicode.h"
#include "platform/windows/wide.h"

namespace hdiplot {

namespace {

constexpr std::pair<std::string_view, UINT> kNamed[] = {
    {"ISO8859-", 28590},  // plus the part's number
    {"ISO-8859-", 28590},
    {"ISO_8859-", 28590},
    {"CP", 0},
};
constexpr UINT kMacintosh = 10000;

// 0 for a code page that is unknown or not installed.
UINT NumberOf(std::string_view name) {
  if (name == "MACINTOSH" || name == "MAC") return kMacintosh;
  for (const auto& [prefix, base] : kNamed) {
    UINT number = 0;
    if (!name.starts_with(prefix)) continue;
    name.remove_prefix(prefix.size());
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), number);
    if (error != std::errc() || end != name.data() + name.size() || number == 0) return 0;
    number += base;
    return IsValidCodePage(number) != 0 ? number : 0;
  }
  return 0;
}

// Windows maps unassigned bytes of its single-byte code pages to the C1 control of the same number.
bool IsOpenPlace(UINT codePage, wchar_t unit) {
  return codePage >= 1250 && codePage <= 1258 && unit >= 0x80 && unit < 0xA0;
}

// Appends the first character. Returns its number of bytes, 0 for none.
size_t TakeCharacter(std::string_view bytes, UINT codePage, std::u16string& text) {
  const size_t length = IsDBCSLeadByteEx(codePage, static_cast<BYTE>(bytes[0])) != 0 ? 2 : 1;
  if (bytes.size() < length) return 0;
  wchar_t units[4];
  const int count = MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, bytes.data(),
                                        static_cast<int>(length), units, static_cast<int>(std::size(units)));
  if (count <= 0 || IsOpenPlace(codePage, units[0])) return 0;
  text.append(hdi::Units(units), static_cast<size_t>(count));
  return length;
}

}  // namespace

bool KnowsCodePage(const std::string& name) { return NumberOf(name) != 0; }

std::optional<std::string> FromCodePage(std::string_view bytes, const std::string& codePage) {
  const UINT number = NumberOf(codePage);
  if (number == 0) return std::nullopt;
  std::u16string text;
  while (!bytes.empty()) {
    const size_t taken = TakeCharacter(bytes, number, text);
    if (taken == 0) text += u'\ufffd';
    bytes.remove_prefix(taken == 0 ? 1 : taken);
  }
  return hdi::ToUtf8(text);
}

}  // namespace hdiplot
