// UTF-16 and UTF-8 by ICU.
#include "platform/unicode.h"

#include <unicode/uchar.h>
#include <unicode/ustring.h>

namespace hdi {
namespace {

constexpr UChar32 kReplacement = 0xFFFD;

}  // namespace

std::string ToUtf8(std::u16string_view text) {
  // A unit takes at most three bytes; a surrogate pair takes four.
  std::string bytes(text.size() * 3, '\0');
  int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strToUTF8WithSub(bytes.data(), static_cast<int32_t>(bytes.size()), &length, text.data(),
                     static_cast<int32_t>(text.size()), kReplacement, nullptr, &status);
  bytes.resize(U_SUCCESS(status) ? static_cast<size_t>(length) : 0);
  return bytes;
}

std::u16string ToUtf16(std::string_view text) {
  // No byte, malformed or not, yields more than one unit.
  std::u16string units(text.size(), u'\0');
  int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strFromUTF8WithSub(units.data(), static_cast<int32_t>(units.size()), &length, text.data(),
                       static_cast<int32_t>(text.size()), kReplacement, nullptr, &status);
  units.resize(U_SUCCESS(status) ? static_cast<size_t>(length) : 0);
  return units;
}

bool SameName(std::u16string_view a, std::u16string_view b) {
  if (a.empty() || b.empty()) return a.size() == b.size();  // empty views may be null
  UErrorCode status = U_ZERO_ERROR;
  const int32_t order = u_strCaseCompare(a.data(), static_cast<int32_t>(a.size()), b.data(),
                                         static_cast<int32_t>(b.size()), U_FOLD_CASE_DEFAULT, &status);
  return U_SUCCESS(status) && order == 0;
}

}  // namespace hdi
