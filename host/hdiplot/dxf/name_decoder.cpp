// Code pages through iconv, UTF-8 checked by hand, and the escapes \U+XXXX and \M+NXXXX.
#include "host/hdiplot/dxf/name_decoder.h"

#include <iconv.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <memory>
#include <optional>
#include <type_traits>

namespace hdiplot {
namespace {

constexpr uint32_t kReplacement = 0xfffd;

void AppendUtf8(uint32_t unit, std::string& text) {
  const auto tail = [&](int shift) { text += static_cast<char>(0x80 | ((unit >> shift) & 0x3f)); };
  if (unit < 0x80) {
    text += static_cast<char>(unit);
  } else if (unit < 0x800) {
    text += static_cast<char>(0xc0 | (unit >> 6));
    tail(0);
  } else if (unit < 0x10000) {
    text += static_cast<char>(0xe0 | (unit >> 12));
    tail(6);
    tail(0);
  } else {
    text += static_cast<char>(0xf0 | (unit >> 18));
    tail(12);
    tail(6);
    tail(0);
  }
}

// The length of the well-formed UTF-8 sequence at the start, 0 if there is none (Unicode, table 3-7).
size_t Utf8Length(std::string_view text) {
  const auto byte = [&](size_t i) -> unsigned { return static_cast<unsigned char>(text[i]); };
  const unsigned lead = byte(0);
  if (lead < 0x80) return 1;
  if (lead < 0xc2 || lead > 0xf4) return 0;
  const size_t length = lead < 0xe0 ? 2 : lead < 0xf0 ? 3 : 4;
  if (text.size() < length) return 0;
  const unsigned low = lead == 0xe0 ? 0xa0 : lead == 0xf0 ? 0x90 : 0x80;
  const unsigned high = lead == 0xed ? 0x9f : lead == 0xf4 ? 0x8f : 0xbf;
  if (byte(1) < low || byte(1) > high) return 0;
  for (size_t i = 2; i < length; ++i) {
    if ((byte(i) & 0xc0) != 0x80) return 0;
  }
  return length;
}

bool IsAscii(std::string_view text) {
  return std::ranges::none_of(text, [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const size_t length = Utf8Length(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

std::string RepairedUtf8(std::string_view text) {
  std::string repaired;
  while (!text.empty()) {
    const size_t length = Utf8Length(text);
    if (length == 0) AppendUtf8(kReplacement, repaired);
    repaired += text.substr(0, length);
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return repaired;
}

// $DWGCODEPAGE says ANSI_932, DOS437 or ISO8859-1 where iconv says CP932, CP437 and ISO8859-1.
std::string IconvName(std::string_view codePage) {
  for (const std::string_view prefix : {std::string_view("ANSI_"), std::string_view("DOS")}) {
    if (codePage.starts_with(prefix)) return "CP" + std::string(codePage.substr(prefix.size()));
  }
  return std::string(codePage);
}

std::string FromCodePage(std::string_view raw, std::string_view codePage) {
  iconv_t opened = iconv_open("UTF-8", IconvName(codePage).c_str());
  if (opened == reinterpret_cast<iconv_t>(-1)) opened = iconv_open("UTF-8", "CP1252");
  if (opened == reinterpret_cast<iconv_t>(-1)) return RepairedUtf8(raw);
  const auto close = [](iconv_t converter) { iconv_close(converter); };
  const std::unique_ptr<std::remove_pointer_t<iconv_t>, decltype(close)> converter(opened, close);
  std::string source(raw);
  std::string text;
  char* from = source.data();
  size_t left = source.size();
  while (left > 0) {
    char piece[64];
    char* to = piece;
    size_t room = sizeof piece;
    const size_t before = left;
    const size_t result = iconv(converter.get(), &from, &left, &to, &room);
    text.append(piece, static_cast<size_t>(to - piece));
    if (result != static_cast<size_t>(-1) || left == 0) continue;
    if (left < before) continue;
    AppendUtf8(kReplacement, text);
    ++from;
    --left;
  }
  return text;
}

bool IsDoubleByte(std::string_view codePage) {
  constexpr std::string_view kEnds[] = {"932",    "936",  "949",     "950",  "1361",
                                        "GB2312", "BIG5", "KSC5601", "JOHAB"};
  return std::ranges::any_of(kEnds, [&](std::string_view end) { return codePage.ends_with(end); });
}

// A character that the file has in ASCII, and how long that is; 0 where there is none.
struct Escape {
  size_t length = 0;
  std::string character;
};

// Four digits. Nothing when there are others.
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

// \U+XXXX, a unit of UTF-16; a character of two units takes two of them.
Escape UnicodeEscapeAt(std::string_view text) {
  constexpr size_t kLength = 7;
  const auto first = EscapedUnit(text);
  if (!first) return {};
  Escape escape{kLength, {}};
  uint32_t unit = *first;
  const uint32_t second = EscapedUnit(text.substr(kLength)).value_or(0);
  if (unit >= 0xd800 && unit < 0xdc00 && second >= 0xdc00 && second < 0xe000) {
    unit = 0x10000 + ((unit - 0xd800) << 10) + (second - 0xdc00);
    escape.length += kLength;
  }
  const bool usable = unit >= 0x20 && (unit < 0xd800 || unit > 0xdfff);
  AppendUtf8(usable ? unit : kReplacement, escape.character);
  return escape;
}

// \M+NXXXX, one or two bytes of the code page with the number N.
Escape CodePageEscapeAt(std::string_view text) {
  constexpr size_t kLength = 8;
  constexpr std::string_view kCodePages[] = {"CP932", "CP950", "CP949", "CP1361", "CP936"};
  if (!text.starts_with(kCodePageEscape) || text.size() < kLength) return {};
  const char number = text[kCodePageEscape.size()];
  const auto code = Hexadecimal(text.substr(kCodePageEscape.size() + 1));
  if (number < '1' || number > '5' || !code) return {};
  const bool isCharacter = (*code & 0xff) >= 0x20 && (*code <= 0xff || *code >= 0x8000);
  if (!isCharacter) return {};
  std::string bytes;
  if (*code > 0xff) bytes += static_cast<char>(*code >> 8);
  bytes += static_cast<char>(*code & 0xff);
  return {kLength, FromCodePage(bytes, kCodePages[number - '1'])};
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
    if (byte == '\t') {
      plain += "^I";
    } else if (byte == 0xc2 && static_cast<unsigned char>(text[i + 1]) < 0xa0) {
      ++i;
    } else if (byte >= 0x20 && byte != 0x7f) {
      plain += text[i];
    }
  }
  return plain;
}

}  // namespace

// Text in a code page of single bytes is hardly ever well-formed UTF-8 by chance; a few characters of two
// bytes are quite often, but not a whole file of them.
void NameDecoder::SetCodePage(std::string_view codePage) {
  codePage_ = UpperCase(codePage);
  mayBeUtf8_ = !IsDoubleByte(codePage_) || IsUtf8(file_);
}

// Plain ASCII is by far the most; and many programs write UTF-8 into files of older versions.
std::string NameDecoder::ToUtf8(std::string_view raw) const {
  if (IsAscii(raw)) return std::string(raw);
  if ((utf8_ || mayBeUtf8_) && IsUtf8(raw)) return std::string(raw);
  return utf8_ ? RepairedUtf8(raw) : FromCodePage(raw, codePage_);
}

std::string NameDecoder::Decode(std::string_view raw) const {
  std::string text = ToUtf8(raw);
  return text.find('\\') == std::string::npos ? text : WithoutEscapes(text, Backslash::kItself);
}

std::string NameDecoder::DecodeText(std::string_view raw, Backslash backslash) const {
  return WithoutControls(WithoutEscapes(ToUtf8(raw), backslash));
}

std::string NameDecoder::Decode(const Group& group) const {
  if (group.value.size() > kLongestName) {
    throw DxfFault{group.ValueLine(), "this name has " + std::to_string(group.value.size()) + " characters"};
  }
  return Decode(group.value);
}

}  // namespace hdiplot
