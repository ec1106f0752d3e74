// Code pages through iconv, UTF-8 checked by hand, and the escape \U+XXXX.
#include "host/hdiplot/dxf/name_decoder.h"

#include <iconv.h>

#include <charconv>
#include <cstdint>
#include <memory>
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

// Reads \U+XXXX at the start; a value above 0xffff means that there is none.
uint32_t EscapedUnit(std::string_view text) {
  constexpr std::string_view kEscape = "\\U+";
  constexpr size_t kLength = 7;
  uint32_t unit = 0;
  if (!text.starts_with(kEscape) || text.size() < kLength) return UINT32_MAX;
  const char* end = text.data() + kLength;
  const auto [read, error] = std::from_chars(text.data() + kEscape.size(), end, unit, 16);
  return error == std::errc{} && read == end ? unit : UINT32_MAX;
}

std::string WithoutEscapes(std::string_view text) {
  constexpr size_t kLength = 7;
  std::string plain;
  while (!text.empty()) {
    uint32_t unit = EscapedUnit(text);
    if (unit > 0xffff) {
      plain += text.front();
      text.remove_prefix(1);
      continue;
    }
    text.remove_prefix(kLength);
    const uint32_t second = EscapedUnit(text);
    if (unit >= 0xd800 && unit < 0xdc00 && second >= 0xdc00 && second < 0xe000) {
      unit = 0x10000 + ((unit - 0xd800) << 10) + (second - 0xdc00);
      text.remove_prefix(kLength);
    }
    const bool usable = unit >= 0x20 && (unit < 0xd800 || unit > 0xdfff);
    AppendUtf8(usable ? unit : kReplacement, plain);
  }
  return plain;
}

}  // namespace

std::string NameDecoder::Decode(std::string_view raw) const {
  // Plain ASCII is by far the most; and many programs write UTF-8 into files of older versions, while text of
  // a code page is hardly ever well-formed UTF-8 by chance.
  std::string text;
  if (IsUtf8(raw)) {
    text = raw;
  } else {
    text = utf8_ ? RepairedUtf8(raw) : FromCodePage(raw, codePage_);
  }
  return text.find("\\U+") == std::string::npos ? text : WithoutEscapes(text);
}

std::string NameDecoder::Decode(const Group& group) const {
  if (group.value.size() > kLongestName) {
    throw DxfFault{group.ValueLine(), "this name has " + std::to_string(group.value.size()) + " characters"};
  }
  return Decode(group.value);
}

}  // namespace hdiplot
