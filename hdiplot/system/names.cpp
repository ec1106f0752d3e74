#include "hdiplot/system/names.h"

#include <unicode/uchar.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <cstdint>

#include "hdiplot/system/ascii_case.h"
#include "platform/unicode.h"

namespace hdiplot {

std::string FoldedName(std::string_view name) {
  // Drawings have many names, most of them ASCII.
  if (std::ranges::all_of(name, [](char c) { return (c & 0x80) == 0; })) return LowerCase(name);
  const std::u16string units = hdi::ToUtf16(name);
  std::u16string folded;
  for (size_t i = 0; i < units.size();) {
    UChar32 character = 0;
    U16_NEXT(units, i, units.size(), character);
    const UChar32 lower = u_foldCase(character, U_FOLD_CASE_DEFAULT);
    if (U16_LENGTH(lower) == 2) folded += static_cast<char16_t>(U16_LEAD(lower));
    folded += static_cast<char16_t>(U16_LENGTH(lower) == 2 ? U16_TRAIL(lower) : lower);
  }
  return hdi::ToUtf8(folded);
}

bool IsSameName(std::string_view a, std::string_view b) { return FoldedName(a) == FoldedName(b); }

bool IsUtf8(std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  u_strFromUTF8(nullptr, 0, nullptr, text.data(), static_cast<int32_t>(text.size()), &status);
  return status != U_INVALID_CHAR_FOUND;
}

}  // namespace hdiplot
