// What the layouts of single lines and of paragraphs share: measuring, the lines along a text, frames.
#pragma once

#include <string_view>
#include <vector>

#include "hdiplot/text/text_block.h"
#include "hdiplot/text/text_codes.h"

namespace hdiplot {

// A value that cannot be used is brought to the nearest that can: heights and factors are above 0, and all of
// them so small that no sum of them runs over.
[[nodiscard]] double UsableHeight(double height);
[[nodiscard]] double UsableFactor(double factor);
[[nodiscard]] double UsableOblique(double radians);

// The look of a text before any of its codes.
[[nodiscard]] TextLook StartLook(const TextStyle& style, double height, double widthFactor, double oblique);

// In drawing units.
[[nodiscard]] double WidthOf(std::u16string_view text, const TextFont& font, const TextLook& look);

[[nodiscard]] inline TextRule RuleOf(const TextLook& look, Vec2 from, Vec2 to) {
  return {from, to, look.color, look.font, look.height};
}

// Adds the pieces and rules of a part that was laid out on its own to the text in which it starts at `at`.
void AddPart(std::vector<TextPiece> pieces, std::vector<TextRule> rules, Vec2 at, TextBlock& block);

// Adds the lines that run along a text of this look between two places on its base line.
void AddRules(LineMarks marks, Vec2 from, double toX, const TextLook& look, std::vector<TextRule>& rules);

[[nodiscard]] inline bool IsBlank(char16_t unit) { return unit == u' ' || unit == u'\u3000'; }
[[nodiscard]] bool HasOnlyBlanks(std::u16string_view text);

}  // namespace hdiplot
