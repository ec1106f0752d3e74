// The forms of stacks.
#include "hdiplot/text/mtext_stack.h"

#include "hdiplot/text/text_layout_parts.h"

namespace hdiplot {
namespace {

constexpr double kStackedHeight = 0.7;  // of the text around
// In heights of the stacked texts:
constexpr double kToleranceGap = 0.3;
constexpr double kFractionGap = 0.6;  // with the bar in its middle
constexpr double kSlashRoom = 0.8;
constexpr double kSlashReach = 0.25;  // of the slash, above and below
// Of a single text's head and foot over the line that it is level with, in heights of the text around.
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

}  // namespace

StackBox LayOutStack(const TextStack& stack, const TextLook& look, SpanLevel level, FontSource& fonts) {
  return StackBuilder(stack, look, level, fonts).Build();
}

}  // namespace hdiplot
