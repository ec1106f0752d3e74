// What the layouts of single lines and of paragraphs share: measuring, lines along a text, stacks, columns.
#pragma once

#include <string_view>
#include <vector>

#include "hdiplot/text/mtext_parser.h"
#include "hdiplot/text/text_block.h"
#include "hdiplot/text/text_codes.h"

namespace hdiplot {

// Clamp a value to what the layout can compute with: heights and factors above 0, and all of them small
// enough that no sum overflows.
[[nodiscard]] double UsableHeight(double height);
[[nodiscard]] double UsableFactor(double factor);
[[nodiscard]] double UsableOblique(double radians);

[[nodiscard]] FontChoice FontOf(const TextStyle& style);

// The look of a text before any of its codes.
[[nodiscard]] TextLook StartLook(const TextStyle& style, double height, double widthFactor, double oblique);

// In heights of capitals, before any look.
[[nodiscard]] double AdvanceOf(std::u16string_view text, const TextFont& font);

// In drawing units.
[[nodiscard]] double WidthOf(std::u16string_view text, const TextFont& font, const TextLook& look);

// Moves a part that was laid out at the origin to `at` and adds it to the text.
void AddPart(std::vector<TextPiece> pieces, std::vector<TextRule> rules, Vec2 at, TextBlock& block);

// Adds the lines along a text of this look, from `from` on its base line to the X coordinate `toX`.
void AddRules(LineMarks marks, Vec2 from, double toX, const TextLook& look, std::vector<TextRule>& rules);

[[nodiscard]] inline bool IsBlank(char16_t unit) { return unit == u' ' || unit == u'\u3000'; }
[[nodiscard]] bool HasOnlyBlanks(std::u16string_view text);

// A laid out stack. It starts at the origin, on the base line of the text around it.
struct StackBox {
  std::vector<TextPiece> pieces;
  std::vector<TextRule> rules;
  double width = 0;
  double low = 0;  // the foot and the head, above the base line
  double high = 0;
};

// `look` is that of the surrounding text; its capitals set the height of the stack.
[[nodiscard]] StackBox LayOutStack(const TextStack& stack, const TextLook& look, SpanLevel level,
                                   FontSource& fonts);

// A column of upright characters, each centred below the one before. In drawing units. The axis is the Y
// axis; the first character starts at 0 and the others follow below.
class TextColumn {
 public:
  // Blanks take up space. Tracking spreads the characters along the column.
  void Add(std::u16string_view text, const TextFont& font, const TextLook& look);
  // Adds a stack in the place of one character. `look` is that of the surrounding text.
  void Add(StackBox stack, const TextLook& look);

  // From the top to the foot of the last character that is not blank.
  [[nodiscard]] double Length() const { return -foot_; }
  // The width of the widest character.
  [[nodiscard]] double Width() const { return width_; }
  void WriteTo(TextBlock& block, Vec2 top) const;

 private:
  // Advances by `reach` and the gap behind it.
  void GoDown(double reach, double width, const TextLook& look);

  TextBlock content_;
  double next_ = 0;  // the top of the next character
  double foot_ = 0;
  double width_ = 0;
};

}  // namespace hdiplot
