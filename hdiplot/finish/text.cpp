#include "hdiplot/finish/text.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <qpdf/QUtil.hh>
#include <string>

#include "platform/unicode.h"

namespace hdiplot {

namespace {

constexpr char16_t kReplacement = 0xFFFD;

bool IsXmlUnit(char16_t unit) {
  return (unit >= 0x20 && unit < 0xFFFE) || unit == '\t' || unit == '\n' || unit == '\r';
}

bool AreDigits(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

// "Z", "+01:00" or nothing, of "Z", "+01'00'" and the like. False for anything else.
bool AppendOffset(std::string_view offset, std::string& date) {
  if (offset.empty()) return true;
  if (offset.front() == 'Z') {
    date += 'Z';
    return true;
  }
  const bool isOffset = offset.size() >= 6 && (offset.front() == '+' || offset.front() == '-') &&
                        AreDigits(offset.substr(1, 2)) && offset[3] == '\'' && AreDigits(offset.substr(4, 2));
  if (isOffset) date.append(offset.substr(0, 3)).append(":").append(offset.substr(4, 2));
  return isOffset;
}

}  // namespace

std::string CleanText(std::string_view text) {
  std::u16string units = hdi::ToUtf16(text);
  std::ranges::replace_if(
      units, [](char16_t unit) { return !IsXmlUnit(unit); }, kReplacement);
  return hdi::ToUtf8(units);
}

QPDFObjectHandle TextString(std::string_view text) {
  return QPDFObjectHandle::newUnicodeString(CleanText(text));
}

std::string PdfDate(int64_t secondsSince1970) {
  const std::chrono::sys_seconds time{std::chrono::seconds(secondsSince1970)};
  return fmt::format("D:{:%Y%m%d%H%M%S}Z", time);
}

std::string PdfDateOfNow() { return QUtil::qpdf_time_to_pdf_time(QUtil::get_current_qpdf_time()); }

std::string XmpDate(std::string_view pdfDate) {
  constexpr size_t kDigits = 14;  // YYYYMMDDHHmmSS
  if (!pdfDate.starts_with("D:") || pdfDate.size() < 2 + kDigits) return {};
  const std::string_view d = pdfDate.substr(2, kDigits);
  if (!AreDigits(d)) return {};
  std::string date = fmt::format("{}-{}-{}T{}:{}:{}", d.substr(0, 4), d.substr(4, 2), d.substr(6, 2),
                                 d.substr(8, 2), d.substr(10, 2), d.substr(12, 2));
  return AppendOffset(pdfDate.substr(2 + kDigits), date) ? date : "";
}

}  // namespace hdiplot
