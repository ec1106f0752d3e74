#include "hdiplot/text/text_codes.h"

#include <charconv>
#include <cmath>

#include "platform/unicode.h"

namespace hdiplot {
namespace {

constexpr char16_t kDegree = u'\u00b0';
constexpr char16_t kPlusMinus = u'\u00b1';

constexpr size_t kDigits = 3;

// The character of %%nnn: code page 1252, but 127 to 129 are the three symbols of stroke fonts.
std::optional<char16_t> NumberedCharacter(unsigned number) {
  constexpr unsigned kFirstSign = 127;
  constexpr std::u16string_view kSigns = {
      u"\u00b0\u00b1\u00d8\u201a\u0192\u201e\u2026\u2020\u2021\u02c6\u2030"
      u"\u0160\u2039\u0152\ufffd\u017d\ufffd\ufffd\u2018\u2019\u201c\u201d"
      u"\u2022\u2013\u2014\u02dc\u2122\u0161\u203a\u0153\ufffd\u017e\u0178"};
  static_assert(kFirstSign + kSigns.size() == 160);
  if (number < 0x20 || number > 0xff) return std::nullopt;
  if (number >= kFirstSign && number < kFirstSign + kSigns.size()) return kSigns[number - kFirstSign];
  return static_cast<char16_t>(number);
}

// `digits` follow the two percent signs.
PercentCode ReadNumber(std::u16string_view digits, const PercentCode& meaningless) {
  if (digits.size() < kDigits) return meaningless;
  unsigned number = 0;
  for (const char16_t digit : digits.substr(0, kDigits)) {
    if (!IsDigit(digit)) return meaningless;
    number = number * 10 + (digit - u'0');
  }
  if (number > 0xff) return meaningless;
  return {.length = meaningless.length + kDigits, .character = NumberedCharacter(number)};
}

}  // namespace

std::optional<double> TakeNumber(std::u16string_view& text) {
  constexpr size_t kLongestNumber = 40;
  std::string digits;
  for (const char16_t unit : text.substr(0, kLongestNumber)) {
    if (unit > 0x7f) break;
    digits += static_cast<char>(unit);
  }
  const char* start = digits.data();
  const char* end = start + digits.size();
  if (digits.starts_with('+')) ++start;
  double number = 0;
  const auto [read, error] = std::from_chars(start, end, number);
  if (error != std::errc{} || !std::isfinite(number)) return std::nullopt;
  text.remove_prefix(static_cast<size_t>(read - digits.data()));
  return number;
}

std::optional<uint32_t> TakeHexadecimal(std::u16string_view& text, size_t digits) {
  if (text.size() < digits) return std::nullopt;
  uint32_t number = 0;
  for (const char16_t unit : text.substr(0, digits)) {
    if (IsDigit(unit)) {
      number = number * 16 + (unit - u'0');
    } else if ((unit | 0x20) >= u'a' && (unit | 0x20) <= u'f') {
      number = number * 16 + ((unit | 0x20) - u'a' + 10U);
    } else {
      return std::nullopt;
    }
  }
  text.remove_prefix(digits);
  return number;
}

PercentCode ReadPercentCode(std::u16string_view text) {
  constexpr std::u16string_view kSigns = u"%%";
  // At the very end they are more likely two percent signs than a truncated code.
  if (!text.starts_with(kSigns) || text.size() == kSigns.size()) return {};
  const std::u16string_view rest = text.substr(kSigns.size());
  const PercentCode meaningless{.length = kSigns.size()};
  const size_t length = kSigns.size() + 1;
  switch (rest.front()) {
    case u'c':
    case u'C':
      return {.length = length, .character = kDiameter};
    case u'd':
    case u'D':
      return {.length = length, .character = kDegree};
    case u'p':
    case u'P':
      return {.length = length, .character = kPlusMinus};
    case u'%':
      return {.length = length, .character = u'%'};
    case u'u':
    case u'U':
      return {.length = length, .toggled = &LineMarks::under};
    case u'o':
    case u'O':
      return {.length = length, .toggled = &LineMarks::over};
    case u'k':
    case u'K':
      return {.length = length, .toggled = &LineMarks::strike};
    default:
      return ReadNumber(rest, meaningless);
  }
}

std::u16string WithoutCaretCodes(std::string_view utf8) {
  std::u16string text = hdi::ToUtf16(utf8);
  size_t out = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    char16_t unit = text[i];
    const char16_t next = unit == u'^' && i + 1 < text.size() ? text[i + 1] : u'\0';
    if (next == u'I' || next == u'J' || next == u'M') unit = static_cast<char16_t>(next - u'@');
    if (unit != text[i] || next == u' ') ++i;
    text[out++] = unit;
  }
  text.resize(out);
  return text;
}

std::u16string PlainText(std::u16string_view value) {
  std::u16string text;
  while (!value.empty()) {
    const PercentCode code = ReadPercentCode(value);
    if (code.length > 0) {
      if (code.character) text += *code.character;
      value.remove_prefix(code.length);
      continue;
    }
    if (value.front() == u'\\' && value.size() > 1) {
      value.remove_prefix(1);
      text += value.front() == u'~' ? u'\u00a0' : value.front();
    } else if (IsPrinted(value.front())) {
      text += value.front();
    }
    value.remove_prefix(1);
  }
  return text;
}

std::vector<MarkedText> ReadTextLine(std::string_view utf8) {
  const std::u16string text = WithoutCaretCodes(utf8);
  std::vector<MarkedText> pieces(1);
  std::u16string_view rest = text;
  while (!rest.empty()) {
    const PercentCode code = ReadPercentCode(rest);
    if (code.length == 0) {
      const char16_t unit = rest.front();
      if (unit == u'\t' || unit == u'\n') pieces.back().text += u' ';
      if (IsPrinted(unit)) pieces.back().text += unit;
      rest.remove_prefix(1);
      continue;
    }
    rest.remove_prefix(code.length);
    if (code.character) pieces.back().text += *code.character;
    if (code.toggled != nullptr) {
      LineMarks marks = pieces.back().marks;
      marks.*code.toggled = !(marks.*code.toggled);
      if (!pieces.back().text.empty()) pieces.emplace_back();
      pieces.back().marks = marks;
    }
  }
  return pieces;
}

}  // namespace hdiplot
