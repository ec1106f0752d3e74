#include "hdiplot/text/mtext_parser.h"

#include <algorithm>
#include <cmath>

#include "hdiplot/geometry/curves.h"
#include "hdiplot/system/ascii_case.h"
#include "hdiplot/system/split.h"
#include "hdiplot/text/text_parts.h"
#include "hdiplot/text/tolerance_signs.h"
#include "platform/unicode.h"

namespace hdiplot {
namespace {

// Groups nested deeper than this do not restore the state at their end.
constexpr size_t kDeepestGroup = 256;

// In units, up to the semicolon that ends a list. A longer one is not a list.
constexpr size_t kLongestList = 1000;

EntityColor ReadIndexColor(double number) {
  const double index = std::clamp(std::round(number), 0.0, 256.0);
  if (index == 0) return {EntityColor::Kind::kByBlock, 7};
  if (index == 256) return {EntityColor::Kind::kByLayer, 7};
  return {EntityColor::Kind::kIndex, static_cast<uint32_t>(index)};
}

// 0xBBGGRR.
EntityColor ReadTrueColor(double number) {
  const auto bgr = static_cast<uint32_t>(std::clamp(number, 0.0, double{0xffffff}));
  return {EntityColor::Kind::kTrue, (bgr & 0xff) << 16 | (bgr & 0xff00) | bgr >> 16};
}

// Bounds the copy for each paragraph.
constexpr size_t kMostTabs = 20;
constexpr size_t kLongestFontName = 255;
constexpr double kFarthest = 1e6;  // of indents and tabs, in heights

std::u16string_view TrimmedSpaces(std::u16string_view text) { return Trimmed<char16_t>(text, u" "); }

std::string FontName(std::u16string_view name) {
  return hdi::ToUtf8(TrimmedSpaces(name).substr(0, kLongestFontName));
}

bool HasFontExtension(std::string_view name) {
  const std::string upper = UpperCase(name);
  return upper.ends_with(".SHX") || upper.ends_with(".TTF") || upper.ends_with(".TTC") ||
         upper.ends_with(".OTF");
}

// Removes a number from the start of the text. 0 for a star or nothing, which mean the default.
double TakeLength(std::u16string_view& text) {
  if (text.starts_with(u'*')) text.remove_prefix(1);
  return std::clamp(TakeNumber(text).value_or(0), -kFarthest, kFarthest);
}

ParagraphAlign ReadAlign(char16_t letter) {
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

// Treats decimal tabs as right tabs: most columns have as many digits behind the point in every line.
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

// Applies "Family|b1|i0|c0|p34", "file.shx" or "file.shx,big.shx" to `font`. `isFile`: a name without an
// extension is a file's.
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

// Applies "i-2,l2,qc,t4,c8,r12" to `format`. Ignores other properties.
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
        format.align = ReadAlign(value.empty() ? u'*' : value.front());
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

// The parts of "1/2", "+0.1^-0.2" or "3#4". None without one of these three separators.
std::optional<TextStack> ReadStack(std::u16string_view value) {
  for (size_t i = 0; i < value.size(); ++i) {
    if (value[i] == u'\\') {
      ++i;
      continue;
    }
    const size_t form = std::u16string_view(u"^/#").find(value[i]);
    if (form == std::u16string_view::npos) continue;
    return TextStack{PlainText(TrimmedSpaces(value.substr(0, i))),
                     PlainText(TrimmedSpaces(value.substr(i + 1))), static_cast<TextStack::Form>(form)};
  }
  return std::nullopt;
}

class Parser {
 public:
  Parser(std::u16string_view text, const TextLook& look) : rest_(text) { state_.look = look; }

  std::vector<MTextParagraph> Parse() {
    paragraphs_.emplace_back();
    while (!rest_.empty()) ReadOne();
    EndParagraph();
    return std::move(paragraphs_);
  }

 private:
  // Restored at the end of a group.
  struct State {
    TextLook look;
    LineMarks marks;
    SpanLevel level = SpanLevel::kBottom;
    ParagraphFormat format;
  };

  char16_t Take() {
    const char16_t unit = rest_.front();
    rest_.remove_prefix(1);
    return unit;
  }

  void Skip(char16_t unit) {
    if (rest_.starts_with(unit)) rest_.remove_prefix(1);
  }

  void ReadOne() {
    if (ReadPercent()) return;
    const char16_t unit = Take();
    switch (unit) {
      case u'\\':
        ReadCode();
        break;
      case u'{':
        OpenGroup();
        break;
      case u'}':
        CloseGroup();
        break;
      case u'\t':
        AddSpan().text = u'\t';
        break;
      case u'\r':
        Skip(u'\n');
        return NewParagraph();
      case u'\n':
        NewParagraph();
        break;
      default:
        Append(unit);
        break;
    }
  }

  bool ReadPercent() {
    const PercentCode code = ReadPercentCode(rest_);
    rest_.remove_prefix(code.length);
    if (code.character) Append(*code.character);
    if (code.toggled != nullptr) Mark(code.toggled, !(state_.marks.*code.toggled));
    return code.length > 0;
  }

  void ReadCode() {
    if (rest_.empty()) return Append(u'\\');
    const char16_t code = Take();
    switch (code) {
      case u'P':
      case u'X':
        return NewParagraph();
      case u'N':
        NewParagraph();
        paragraphs_.back().startsColumn = true;
        break;
      case u'~':
        return Append(u'\u00a0');
      case u'L':
        return Mark(&LineMarks::under, true);
      case u'l':
        return Mark(&LineMarks::under, false);
      case u'O':
        return Mark(&LineMarks::over, true);
      case u'o':
        return Mark(&LineMarks::over, false);
      case u'K':
        return Mark(&LineMarks::strike, true);
      case u'k':
        return Mark(&LineMarks::strike, false);
      case u'U':
        return ReadUnit();
      case u'M':
        return ReadByteCharacter();
      case u'S':
        return ReadStacked();
      case u'F':
      case u'f':
      case u'p':
        return ReadList(code);
      case u'A':
      case u'C':
      case u'c':
      case u'H':
      case u'Q':
      case u'T':
      case u'W':
        return ReadNumber(code);
      default:
        return Append(code);
    }
  }

  void ReadNumber(char16_t code) {
    const std::optional<double> number = TakeNumber(rest_);
    const size_t before = rest_.size();
    if (number) Skip(u'x');
    const bool isFactor = rest_.size() < before;
    Skip(u';');
    if (!number) return;
    TextLook& look = state_.look;
    const auto change = [&](double& value, double (*usable)(double)) {
      if (*number > 0) value = usable(isFactor ? value * *number : *number);
    };
    switch (code) {
      case u'A':
        state_.level = static_cast<SpanLevel>(std::clamp(*number, 0.0, 2.0));
        break;
      case u'C':
        look.color = ReadIndexColor(*number);
        break;
      case u'c':
        look.color = ReadTrueColor(*number);
        break;
      case u'H':
        change(look.height, UsableHeight);
        break;
      case u'Q':
        look.oblique = UsableOblique(Radians(*number));
        break;
      case u'T':
        change(look.tracking, UsableFactor);
        break;
      case u'W':
        change(look.widthFactor, UsableFactor);
        break;
      default:
        break;
    }
    spanOpen_ = false;
  }

  void ReadList(char16_t code) {
    const size_t end = rest_.substr(0, kLongestList).find(u';');
    if (end == std::u16string_view::npos) return;
    const std::u16string_view value = rest_.substr(0, end);
    rest_.remove_prefix(end + 1);
    if (code == u'p') {
      ReadParagraphFormat(value, state_.format);
      paragraphs_.back().format = state_.format;
    } else {
      ReadFont(value, code == u'F', state_.look.font);
      spanOpen_ = false;
    }
  }

  void ReadStacked() {
    size_t end = 0;
    while (end < rest_.size() && rest_[end] != u';') end += rest_[end] == u'\\' ? 2 : 1;
    end = std::min(end, rest_.size());
    const std::u16string_view value = rest_.substr(0, end);
    rest_.remove_prefix(std::min(end + 1, rest_.size()));
    if (std::optional<TextStack> stack = ReadStack(value)) {
      AddSpan().stack = std::move(stack);
    } else {
      for (const char16_t unit : PlainText(value)) Append(unit);
    }
  }

  // \U+XXXX that the file's reader left, such as half of a surrogate pair.
  void ReadUnit() {
    std::u16string_view digits = rest_;
    if (!digits.starts_with(u'+')) return Append(u'U');
    digits.remove_prefix(1);
    const std::optional<uint32_t> unit = TakeHexadecimal(digits, 4);
    if (!unit) return Append(u'U');
    rest_ = digits;
    Append(static_cast<char16_t>(*unit));
  }

  // \M+NXXXX of an unknown code page: a digit for the page and four for the character.
  void ReadByteCharacter() {
    constexpr size_t kDigits = 5;
    std::u16string_view digits = rest_;
    if (!digits.starts_with(u'+')) return Append(u'M');
    digits.remove_prefix(1);
    if (!TakeHexadecimal(digits, kDigits)) return Append(u'M');
    rest_ = digits;
    Append(u'\ufffd');
  }

  void OpenGroup() {
    if (groups_.size() < kDeepestGroup) {
      groups_.push_back(state_);
    } else {
      ++deeperGroups_;
    }
  }

  void CloseGroup() {
    if (deeperGroups_ > 0) {
      --deeperGroups_;
    } else if (!groups_.empty()) {
      state_ = std::move(groups_.back());
      groups_.pop_back();
      spanOpen_ = false;
    }
  }

  void Mark(bool LineMarks::*mark, bool on) {
    state_.marks.*mark = on;
    spanOpen_ = false;
  }

  void Append(char16_t unit) {
    if (!IsPrinted(unit)) return;
    if (!spanOpen_) AddSpan();
    paragraphs_.back().spans.back().text += hasSigns_ ? ToleranceSign(unit) : unit;
    spanOpen_ = true;
  }

  MTextSpan& AddSpan() {
    spanOpen_ = false;
    MTextSpan& span = paragraphs_.back().spans.emplace_back();
    span.look = state_.look;
    hasSigns_ = IsToleranceFont(span.look.font.fontFile);
    span.marks = state_.marks;
    span.level = state_.level;
    return span;
  }

  void EndParagraph() { paragraphs_.back().endHeight = state_.look.height; }

  void NewParagraph() {
    EndParagraph();
    paragraphs_.emplace_back().format = state_.format;
    spanOpen_ = false;
  }

  std::u16string_view rest_;
  State state_;
  std::vector<State> groups_;
  size_t deeperGroups_ = 0;
  std::vector<MTextParagraph> paragraphs_;
  bool hasSigns_ = false;  // letters of the last span are signs of tolerances
  bool spanOpen_ = false;  // further characters go to the last span
};

}  // namespace

std::vector<MTextParagraph> ParseMText(std::string_view utf8, const TextLook& start) {
  const std::u16string text = WithoutCaretCodes(utf8);
  return Parser(text, start).Parse();
}

}  // namespace hdiplot
