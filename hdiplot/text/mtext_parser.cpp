// The walk through a text of paragraphs, code by code.
#include "hdiplot/text/mtext_parser.h"

#include <cmath>
#include <numbers>

#include "hdiplot/text/mtext_values.h"
#include "hdiplot/text/text_layout_parts.h"

namespace hdiplot {
namespace {

// Groups within groups; deeper ones no longer bring back what was before them.
constexpr size_t kDeepestGroup = 256;

// In units, of a list up to its semicolon. Where it is farther away there is no list.
constexpr size_t kLongestList = 1000;

EntityColor IndexColor(double number) {
  const double index = std::clamp(std::round(number), 0.0, 256.0);
  if (index == 0) return {EntityColor::Kind::kByBlock, 7};
  if (index == 256) return {EntityColor::Kind::kByLayer, 7};
  return {EntityColor::Kind::kIndex, static_cast<uint32_t>(index)};
}

// Written with blue in the highest byte.
EntityColor TrueColor(double number) {
  const auto bgr = static_cast<uint32_t>(std::clamp(number, 0.0, double{0xffffff}));
  return {EntityColor::Kind::kTrue, (bgr & 0xff) << 16 | (bgr & 0xff00) | bgr >> 16};
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
  // What a group restores at its end.
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
      case u'N':
      case u'X':
        return NewParagraph();
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
        look.color = IndexColor(*number);
        break;
      case u'c':
        look.color = TrueColor(*number);
        break;
      case u'H':
        change(look.height, UsableHeight);
        break;
      case u'Q':
        look.oblique = UsableOblique(*number * std::numbers::pi / 180);
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

  // What the reader of the file could not resolve, such as half of a pair.
  void ReadUnit() {
    std::u16string_view digits = rest_;
    if (!digits.starts_with(u'+')) return Append(u'U');
    digits.remove_prefix(1);
    const std::optional<uint32_t> unit = TakeHexadecimal(digits, 4);
    if (!unit) return Append(u'U');
    rest_ = digits;
    Append(static_cast<char16_t>(*unit));
  }

  // A character of an unknown code page: the digit of the page and four of the character.
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
    paragraphs_.back().spans.back().text += unit;
    spanOpen_ = true;
  }

  MTextSpan& AddSpan() {
    spanOpen_ = false;
    MTextSpan& span = paragraphs_.back().spans.emplace_back();
    span.look = state_.look;
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
  bool spanOpen_ = false;  // whether the last span takes further characters
};

}  // namespace

std::vector<MTextParagraph> ParseMText(std::string_view utf8, const TextLook& start) {
  const std::u16string text = WithoutCaretCodes(utf8);
  return Parser(text, start).Parse();
}

}  // namespace hdiplot
