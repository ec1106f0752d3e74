// Numbers, fonts, paragraph properties and stacks out of formatting codes.
#include "hdiplot/text/mtext_values.h"

#include <algorithm>
#include <charconv>

#include "hdiplot/system/ascii_case.h"
#include "platform/unicode.h"

namespace hdiplot {
namespace {

// More than any text has, and few enough to be copied with each paragraph.
constexpr size_t kMostTabs = 20;
constexpr size_t kLongestFontName = 255;
constexpr double kFarthest = 1e6;  // of indents and tabs, in heights

bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

// Takes what is before the separator, and the separator. All of the text when there is none.
std::u16string_view TakePart(std::u16string_view& text, char16_t separator) {
  const size_t end = std::min(text.find(separator), text.size());
  const std::u16string_view part = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return part;
}

std::u16string_view Trimmed(std::u16string_view text) {
  while (text.starts_with(u' ')) text.remove_prefix(1);
  while (text.ends_with(u' ')) text.remove_suffix(1);
  return text;
}

std::string FontName(std::u16string_view name) {
  return hdi::ToUtf8(Trimmed(name).substr(0, kLongestFontName));
}

bool HasFontExtension(std::string_view name) {
  const std::string upper = UpperCase(name);
  return upper.ends_with(".SHX") || upper.ends_with(".TTF") || upper.ends_with(".TTC") ||
         upper.ends_with(".OTF");
}

// The number at the start, or 0 where a star or nothing stands for the usual value.
double TakeLength(std::u16string_view& text) {
  if (text.starts_with(u'*')) text.remove_prefix(1);
  return std::clamp(TakeNumber(text).value_or(0), -kFarthest, kFarthest);
}

ParagraphAlign AlignOf(char16_t letter) {
  switch (letter) {
    case u'l':
      return ParagraphAlign::kLeft;
    case u'c':
      return ParagraphAlign::kCenter;
    case u'r':
      return ParagraphAlign::kRight;
    case u'j':
      return ParagraphAlign::kJustified;
    case u'd':
      return ParagraphAlign::kDistributed;
    default:
      return ParagraphAlign::kByAttachment;
  }
}

// Decimal tabs are taken for right ones: the digits behind the point are mostly as many.
std::vector<TabStop> ReadTabs(std::u16string_view list) {
  std::vector<TabStop> tabs;
  while (!list.empty() && tabs.size() < kMostTabs) {
    std::u16string_view item = TakePart(list, u',');
    TabStop tab;
    if (item.starts_with(u'c')) tab.kind = TabStop::Kind::kCenter;
    if (item.starts_with(u'r') || item.starts_with(u'd')) tab.kind = TabStop::Kind::kRight;
    if (!item.empty() && !IsDigit(item.front())) item.remove_prefix(1);
    tab.at = TakeLength(item);
    if (tab.at > 0) tabs.push_back(tab);
  }
  return tabs;
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

void ReadFont(std::u16string_view value, bool isFile, FontChoice& font) {
  std::u16string_view names = TakePart(value, u'|');
  const std::string name = FontName(TakePart(names, u','));
  const std::string bigFont = FontName(names);
  if (name.empty() && bigFont.empty()) return;
  if (!bigFont.empty()) font.bigFontFile = bigFont;
  FontChoice changed;
  changed.bigFontFile = font.bigFontFile;
  bool saysWeight = false;
  while (!value.empty()) {
    const std::u16string_view property = TakePart(value, u'|');
    const bool on = property.ends_with(u'1');
    if (property.starts_with(u'b')) changed.bold = on;
    if (property.starts_with(u'i')) changed.italic = on;
    saysWeight = saysWeight || property.starts_with(u'b');
  }
  if (name.empty()) return;
  (HasFontExtension(name) || (isFile && !saysWeight) ? changed.fontFile : changed.family) = name;
  font = changed;
}

void ReadParagraphFormat(std::u16string_view value, ParagraphFormat& format) {
  while (!value.empty()) {
    const char16_t letter = value.front();
    value.remove_prefix(1);
    switch (letter) {
      case u'*':
        format = {};
        break;
      case u'i':
        format.first = TakeLength(value);
        break;
      case u'l':
        format.left = TakeLength(value);
        break;
      case u'r':
        format.right = TakeLength(value);
        break;
      case u'q':
        format.align = AlignOf(value.empty() ? u'*' : value.front());
        if (!value.empty()) value.remove_prefix(1);
        break;
      case u't':  // runs to the end of the list
        format.tabs = ReadTabs(value);
        return;
      default:
        break;
    }
  }
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

std::optional<TextStack> ReadStack(std::u16string_view value) {
  for (size_t i = 0; i < value.size(); ++i) {
    if (value[i] == u'\\') {
      ++i;
      continue;
    }
    const size_t form = std::u16string_view(u"^/#").find(value[i]);
    if (form == std::u16string_view::npos) continue;
    return TextStack{PlainText(Trimmed(value.substr(0, i))), PlainText(Trimmed(value.substr(i + 1))),
                     static_cast<TextStack::Form>(form)};
  }
  return std::nullopt;
}

}  // namespace hdiplot
