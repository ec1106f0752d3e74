#include "hdiplot/text/text_column.h"

#include <algorithm>

#include "hdiplot/text/text_layout_parts.h"

namespace hdiplot {
namespace {

// In heights of capitals. Characters keep the same distance from foot to head, so that small letters are
// nearer to each other than capitals are. Stroke fonts, whose capitals are 21 units high, leave 10.
constexpr double kGap = 10.0 / 21;
constexpr double kSmallLetter = 2.0 / 3;
constexpr double kDescender = 1.0 / 3;

// Only Latin letters: what is not known to be small has room for a capital.
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
