// Measuring and marking of texts.
#include "hdiplot/text/text_layout_parts.h"

#include <algorithm>
#include <numbers>

namespace hdiplot {
namespace {

// Distances from the base line, in heights of capitals.
constexpr double kUnderline = -0.2;
constexpr double kOverline = 1.2;
constexpr double kStrike = 0.5;

// NaN becomes the lower bound.
double Bounded(double value, double low, double high) { return value >= low ? std::min(value, high) : low; }

}  // namespace

double UsableHeight(double height) { return Bounded(height, 1e-9, 1e12); }

double UsableFactor(double factor) { return Bounded(factor, 1e-6, 1e6); }

double UsableOblique(double radians) {
  constexpr double kSteepest = 85 * std::numbers::pi / 180;
  return std::isfinite(radians) ? Bounded(radians, -kSteepest, kSteepest) : 0;
}

TextLook StartLook(const TextStyle& style, double height, double widthFactor, double oblique) {
  TextLook look;
  look.font = {style.family, style.fontFile, style.bigFontFile, style.bold, style.italic};
  look.height = UsableHeight(height);
  look.widthFactor = UsableFactor(widthFactor);
  look.oblique = UsableOblique(oblique);
  return look;
}

double WidthOf(std::u16string_view text, const TextFont& font, const TextLook& look) {
  double width = 0;
  for (const char16_t unit : text) width += font.Advance(unit);
  return width * look.height * look.widthFactor * look.tracking;
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

}  // namespace hdiplot
