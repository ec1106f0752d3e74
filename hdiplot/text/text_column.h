// A column of characters, as vertical texts of one line and of paragraphs have them: each stands upright
// below the one before, centred on the column's axis.
#pragma once

#include <string_view>

#include "hdiplot/text/mtext_stack.h"

namespace hdiplot {

// In drawing units. The axis is the Y axis; the first character begins at 0 and the rest is below.
class TextColumn {
 public:
  // Blanks leave their room. Tracking moves characters apart along the column.
  void Add(std::u16string_view text, const TextFont& font, const TextLook& look);
  // Takes the place of a character. `look` is that of the text around it.
  void Add(StackBox stack, const TextLook& look);

  // Down to the foot of the last that is no blank.
  [[nodiscard]] double Length() const { return -foot_; }
  // Of the widest.
  [[nodiscard]] double Width() const { return width_; }
  void WriteTo(TextBlock& block, Vec2 top) const;

 private:
  // Something that reaches so far down, and the gap below it.
  void GoDown(double reach, double width, const TextLook& look);

  TextBlock content_;
  double next_ = 0;  // where the next character begins
  double foot_ = 0;
  double width_ = 0;
};

}  // namespace hdiplot
