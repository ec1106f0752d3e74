// Code pages of the system, and the escapes \U+XXXX and \M+NXXXX.
#include "hdiplot/dxf/text_decoder.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <utility>

#include "hdiplot/dxf/faults.h"
#include "hdiplot/system/ascii_case.h"
#include "hdiplot/system/code_pages.h"
#include "platform/unicode.h"

namespace hdiplot {
namespace {

bool IsAscii(std::string_view text) {
  return std::ranges::none_of(text, [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

// With U+FFFD for malformed bytes.
std::string RepairedUtf8(std::string_view text) { return hdi::ToUtf8(hdi::ToUtf16(text)); }

constexpr const char* kJohab = "CP1361";

// Names in $DWGCODEPAGE without a number. Each is a subset of the code page.
constexpr std::pair<std::string_view, const char*> kNamedCodePages[] = {
    {"SJIS", "CP932"},    {"SHIFT_JIS", "CP932"}, {"GB2312", "CP936"},   {"GBK", "CP936"},
    {"KSC5601", "CP949"}, {"KSC_5601", "CP949"},  {"KSC-5601", "CP949"}, {"BIG5", "CP950"},
    {"JOHAB", kJohab},    {"ASCII", "CP1252"},
};

bool IsNumber(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// ANSI_932, DOS437 and ISO8859-1 in $DWGCODEPAGE are CP932, CP437 and ISO8859-1.
std::string NameOfCodePage(std::string_view codePage) {
  std::string_view number = codePage;
  for (const std::string_view prefix : {"ANSI_", "ANSI", "DOS_", "DOS", "CP"}) {
    if (!codePage.starts_with(prefix)) continue;
    number = codePage.substr(prefix.size());
    break;
  }
  if (IsNumber(number)) return "CP" + std::string(number);
  for (const auto& [name, systemName] : kNamedCodePages) {
    if (number == name) return systemName;
  }
  return std::string(codePage);
}

// Conversions from Johab yield a won sign for the byte that drawings use as a backslash.
void PutBackslashes(std::string& text) {
  constexpr std::string_view kWon = "\u20a9";
  for (size_t at = text.find(kWon); at != std::string::npos; at = text.find(kWon, at + 1)) {
    text.replace(at, kWon.size(), 1, '\\');
  }
}

// An unknown code page counts as UTF-8.
std::string Converted(std::string_view raw, const std::string& codePage) {
  std::optional<std::string> text = FromCodePage(raw, codePage);
  if (!text) return RepairedUtf8(raw);
  if (codePage == kJohab) PutBackslashes(*text);
  return *text;
}

// The single-byte code pages of Windows. Many programs declare one of them and write UTF-8.
bool IsWindowsCodePage(std::string_view systemName) {
  return systemName.starts_with("CP125") && systemName.size() == 6;
}

// An escaped character, and the length of the escape; 0: there is none.
struct Escape {
  size_t length = 0;
  std::string character;
};

// The first four digits.
std::optional<uint32_t> Hexadecimal(std::string_view text) {
  uint32_t value = 0;
  if (text.size() < 4) return {};
  const auto [read, error] = std::from_chars(text.data(), text.data() + 4, value, 16);
  if (error != std::errc{} || read != text.data() + 4) return {};
  return value;
}

constexpr std::string_view kUnicodeEscape = "\\U+";
constexpr std::string_view kCodePageEscape = "\\M+";

std::optional<uint32_t> EscapedUnit(std::string_view text) {
  if (!text.starts_with(kUnicodeEscape)) return {};
  return Hexadecimal(text.substr(kUnicodeEscape.size()));
}

// \U+XXXX, a unit of UTF-16. A surrogate pair is two escapes.
Escape UnicodeEscapeAt(std::string_view text) {
  constexpr size_t kLength = 7;
  const auto first = EscapedUnit(text);
  if (!first) return {};
  std::u16string units(1, *first >= 0x20 ? static_cast<char16_t>(*first) : u'\ufffd');
  const uint32_t second = EscapedUnit(text.substr(kLength)).value_or(0);
  const bool isPair = *first >= 0xd800 && *first < 0xdc00 && second >= 0xdc00 && second < 0xe000;
  if (isPair) units += static_cast<char16_t>(second);
  return {units.size() * kLength, hdi::ToUtf8(units)};
}

// \M+NXXXX, one or two bytes of the code page with the number N.
Escape CodePageEscapeAt(std::string_view text) {
  constexpr size_t kLength = 8;
  constexpr const char* kCodePages[] = {"CP932", "CP950", "CP949", kJohab, "CP936"};
  if (!text.starts_with(kCodePageEscape) || text.size() < kLength) return {};
  const char number = text[kCodePageEscape.size()];
  const auto code = Hexadecimal(text.substr(kCodePageEscape.size() + 1));
  if (number < '1' || number > '5' || !code) return {};
  const bool isCharacter = (*code & 0xff) >= 0x20 && (*code <= 0xff || *code >= 0x8000);
  if (!isCharacter) return {};
  std::string bytes;
  if (*code > 0xff) bytes += static_cast<char>(*code >> 8);
  bytes += static_cast<char>(*code & 0xff);
  return {kLength, Converted(bytes, kCodePages[number - '1'])};
}

std::string WithoutEscapes(std::string_view text, Backslash backslash) {
  const bool hasCodes = backslash == Backslash::kStartsCode;
  std::string plain;
  while (!text.empty()) {
    const size_t next = std::min(text.find('\\'), text.size());
    plain += text.substr(0, next);
    text.remove_prefix(next);
    Escape escape = UnicodeEscapeAt(text);
    if (escape.length == 0) escape = CodePageEscapeAt(text);
    if (escape.length == 0) {
      // The second of two backslashes starts nothing.
      const size_t taken = hasCodes && text.starts_with("\\\\") ? 2 : 1;
      plain += text.substr(0, taken);
      text.remove_prefix(std::min(taken, text.size()));
      continue;
    }
    if (hasCodes && (escape.character == "\\" || escape.character == "{" || escape.character == "}"))
      plain += '\\';
    plain += escape.character;
    text.remove_prefix(escape.length);
  }
  return plain;
}

// The controls are U+0000 to U+001F and U+007F to U+009F.
std::string WithoutControls(std::string_view text) {
  std::string plain;
  for (size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte == '\t' || byte == '\n') {  // a line feed is possible in a binary file only
      plain += byte == '\t' ? "^I" : "^J";
    } else if (byte == 0xc2 && static_cast<unsigned char>(text[i + 1]) < 0xa0) {
      ++i;
    } else if (byte >= 0x20 && byte != 0x7f) {
      plain += text[i];
    }
  }
  return plain;
}

}  // namespace

// Text in a code page of Windows is hardly ever well-formed UTF-8 by chance; in others it often is.
void TextDecoder::SetCodePage(std::string_view codePage) {
  const std::string name = NameOfCodePage(UpperCase(codePage));
  const bool isKnown = !name.empty() && KnowsCodePage(name);
  codePage_ = isKnown ? name : kUsualCodePage;
  mayBeUtf8_ = IsWindowsCodePage(codePage_);
}

std::string TextDecoder::ToUtf8(std::string_view raw) const {
  if (IsAscii(raw)) return std::string(raw);
  return isUtf8_ || (mayBeUtf8_ && IsUtf8(raw)) ? RepairedUtf8(raw) : Converted(raw, codePage_);
}

std::string TextDecoder::Decode(std::string_view raw) const {
  std::string text = ToUtf8(raw);
  return text.find('\\') == std::string::npos ? text : WithoutEscapes(text, Backslash::kItself);
}

std::string TextDecoder::DecodeName(const Group& group) const {
  const std::string_view raw = group.Value();
  if (raw.size() <= kLongestName) return Decode(raw);
  throw DxfFault{group.place, fmt::format("this name has {} characters", raw.size())};
}

std::string TextDecoder::DecodeFoldedName(const Group& group) const { return FoldedName(DecodeName(group)); }

std::string TextDecoder::DecodeText(std::string_view raw, Backslash backslash) const {
  const bool isPlain = std::ranges::all_of(raw, [](char c) { return c >= 0x20 && c < 0x7f && c != '\\'; });
  if (isPlain) return std::string(raw);
  return WithoutControls(WithoutEscapes(ToUtf8(raw), backslash));
}

}  // namespace hdiplot
