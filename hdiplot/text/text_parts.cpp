#include "hdiplot/text/text_parts.h"

#include <algorithm>
#include <numbers>

namespace hdiplot {
namespace {

// Above the base line, in heights of capitals.
constexpr double kUnderline = -0.2;
constexpr double kOverline = 1.2;
constexpr double kStrike = 0.5;

// NaN becomes the lower bound.
double Bounded(double value, double low, double high) { return value >= low ? std::min(value, high) : low; }

TextRule RuleOf(const TextLook& look, Vec2 from, Vec2 to) {
  return {from, to, look.color, look.font, look.height};
}

constexpr double kStackedHeight = 0.7;  // in heights of the surrounding text
// In heights of the stacked texts:
constexpr double kToleranceGap = 0.3;
constexpr double kFractionGap = 0.6;  // with the bar in its middle
constexpr double kSlashRoom = 0.8;
constexpr double kSlashReach = 0.25;  // of the slash beyond the capitals, above and below
// How far a single text goes beyond the line that it is aligned to, in heights of the surrounding text.
constexpr double kAlone = 0.2;

class StackBuilder {
 public:
  StackBuilder(const TextStack& stack, const TextLook& look, SpanLevel level, FontSource& fonts)
      : stack_(stack), look_(look), level_(level), around_(look.height), font_(fonts.FontFor(look.font)) {
    look_.height *= kStackedHeight;
    upperWidth_ = WidthOf(stack.upper, font_, look_);
    lowerWidth_ = WidthOf(stack.lower, font_, look_);
  }

  StackBox Build() {
    if (stack_.form == TextStack::Form::kDiagonal) {
      BuildDiagonal();
    } else if (stack_.upper.empty() || stack_.lower.empty()) {
      BuildAlone();
    } else {
      BuildPile();
    }
    return std::move(box_);
  }

 private:
  void Add(const std::u16string& text, Vec2 at, double width) {
    if (!HasOnlyBlanks(text)) box_.pieces.push_back({text, at, width, look_});
  }

  void BuildDiagonal() {
    const double small = look_.height;
    const double lowerAt = upperWidth_ + kSlashRoom * small;
    Add(stack_.upper, {0, around_ - small}, upperWidth_);
    Add(stack_.lower, {lowerAt, 0}, lowerWidth_);
    const double reach = kSlashReach * small;
    box_.rules.push_back(RuleOf(look_, {upperWidth_, -reach}, {lowerAt, around_ + reach}));
    Measure(lowerAt + lowerWidth_, 0, around_);
  }

  // A superscript or a subscript.
  void BuildAlone() {
    const bool raised = stack_.lower.empty();
    const double small = look_.height;
    const double low = raised ? (1 + kAlone) * around_ - small : -kAlone * around_;
    Add(raised ? stack_.upper : stack_.lower, {0, low}, upperWidth_ + lowerWidth_);
    Measure(upperWidth_ + lowerWidth_, low, low + small);
  }

  void BuildPile() {
    const bool isFraction = stack_.form == TextStack::Form::kFraction;
    const double small = look_.height;
    const double gap = (isFraction ? kFractionGap : kToleranceGap) * small;
    const double height = 2 * small + gap;
    const double width = std::max(upperWidth_, lowerWidth_);
    const double low = (around_ - height) * static_cast<double>(level_) / 2;
    const double part = isFraction ? 0.5 : 0;
    Add(stack_.upper, {(width - upperWidth_) * part, low + small + gap}, upperWidth_);
    Add(stack_.lower, {(width - lowerWidth_) * part, low}, lowerWidth_);
    const double bar = low + small + gap / 2;
    if (isFraction) box_.rules.push_back(RuleOf(look_, {0, bar}, {width, bar}));
    Measure(width, low, low + height);
  }

  void Measure(double width, double low, double high) {
    box_.width = width;
    box_.low = low;
    box_.high = high;
  }

  const TextStack& stack_;
  TextLook look_;
  SpanLevel level_;
  double around_;
  const TextFont& font_;
  double upperWidth_ = 0;
  double lowerWidth_ = 0;
  StackBox box_;
};

// In heights of capitals. The gap from foot to head is constant, so small letters advance less than capitals.
// Stroke fonts leave 10 units between capitals of 21.
constexpr double kGap = 10.0 / 21;
constexpr double kSmallLetter = 2.0 / 3;
constexpr double kDescender = 1.0 / 3;

// Knows Latin letters only; any other character counts as a capital.
double HeadOf(char16_t unit) {
  constexpr std::u16string_view kSmallLetters = u"acegmnopqrsuvwxyz";
  return kSmallLetters.find(unit) != std::u16string_view::npos ? kSmallLetter : 1;
}

double DepthOf(char16_t unit) {
  constexpr std::u16string_view kWithDescender = u"gjpqy";
  return kWithDescender.find(unit) != std::u16string_view::npos ? kDescender : 0;
}

bool IsPair(std::u16string_view text) {
  return text.size() > 1 && (text[0] & 0xfc00) == 0xd800 && (text[1] & 0xfc00) == 0xdc00;
}

}  // namespace

double UsableHeight(double height) { return Bounded(height, 1e-9, 1e12); }

double UsableFactor(double factor) { return Bounded(factor, 1e-6, 1e6); }

double UsableOblique(double radians) {
  constexpr double kSteepest = 85 * std::numbers::pi / 180;
  return std::isfinite(radians) ? Bounded(radians, -kSteepest, kSteepest) : 0;
}

FontChoice FontOf(const TextStyle& style) {
  return {style.family, style.fontFile, style.bigFontFile, style.bold, style.italic};
}

TextLook StartLook(const TextStyle& style, double height, double widthFactor, double oblique) {
  TextLook look;
  look.font = FontOf(style);
  look.height = UsableHeight(height);
  look.widthFactor = UsableFactor(widthFactor);
  look.oblique = UsableOblique(oblique);
  return look;
}

double AdvanceOf(std::u16string_view text, const TextFont& font) {
  double advance = 0;
  for (const char16_t unit : text) advance += font.Advance(unit);
  return advance;
}

double WidthOf(std::u16string_view text, const TextFont& font, const TextLook& look) {
  return AdvanceOf(text, font) * look.height * look.widthFactor * look.tracking;
}

void AddPart(std::vector<TextPiece> pieces, std::vector<TextRule> rules, Vec2 at, TextBlock& block) {
  for (TextPiece& piece : pieces) {
    piece.at = piece.at + at;
    block.pieces.push_back(std::move(piece));
  }
  for (TextRule& rule : rules) {
    rule.from = rule.from + at;
    rule.to = rule.to + at;
    block.rules.push_back(std::move(rule));
  }
}

void AddRules(LineMarks marks, Vec2 from, double toX, const TextLook& look, std::vector<TextRule>& rules) {
  if (!(toX > from.x)) return;
  const auto add = [&](bool marked, double heights) {
    const double y = from.y + heights * look.height;
    if (marked) rules.push_back(RuleOf(look, {from.x, y}, {toX, y}));
  };
  add(marks.under, kUnderline);
  add(marks.over, kOverline);
  add(marks.strike, kStrike);
}

bool HasOnlyBlanks(std::u16string_view text) { return std::all_of(text.begin(), text.end(), IsBlank); }

StackBox LayOutStack(const TextStack& stack, const TextLook& look, SpanLevel level, FontSource& fonts) {
  return StackBuilder(stack, look, level, fonts).Build();
}

void TextColumn::Add(std::u16string_view text, const TextFont& font, const TextLook& look) {
  TextLook upright = look;
  upright.tracking = 1;
  while (!text.empty()) {
    const std::u16string_view character = text.substr(0, IsPair(text) ? 2 : 1);
    text.remove_prefix(character.size());
    const double width = WidthOf(character, font, upright);
    const double head = HeadOf(character[0]) * look.height;
    const double reach = head + DepthOf(character[0]) * look.height;
    if (!HasOnlyBlanks(character)) {
      content_.pieces.push_back({std::u16string(character), {-width / 2, next_ - head}, width, upright});
      foot_ = next_ - reach;
    }
    GoDown(reach, width, look);
  }
}

void TextColumn::Add(StackBox stack, const TextLook& look) {
  const Vec2 origin{-stack.width / 2, next_ - stack.high};
  AddPart(std::move(stack.pieces), std::move(stack.rules), origin, content_);
  foot_ = origin.y + stack.low;
  GoDown(stack.high - stack.low, stack.width, look);
}

void TextColumn::WriteTo(TextBlock& block, Vec2 top) const {
  AddPart(content_.pieces, content_.rules, top, block);
}

void TextColumn::GoDown(double reach, double width, const TextLook& look) {
  width_ = std::max(width_, width);
  next_ -= (reach + kGap * look.height) * look.tracking;
}

}  // namespace hdiplot
