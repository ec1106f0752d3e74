// Lays out the texts of one drawing in its own styles.
#pragma once

#include <string>

#include "hdiplot/model/drawing.h"
#include "hdiplot/text/font_book.h"
#include "hdiplot/text/text_block.h"

namespace hdiplot {

class TextSetter {
 public:
  // Keeps references to both.
  TextSetter(const Drawing& drawing, FontBook& fonts) : drawing_(drawing), fonts_(fonts) {}

  [[nodiscard]] TextBlock Set(const TextEntity& text);
  [[nodiscard]] TextBlock Set(const MTextEntity& text);
  [[nodiscard]] TextBlock Set(const ToleranceEntity& tolerance);

 private:
  [[nodiscard]] const TextStyle& StyleOf(const std::string& name) const;
  [[nodiscard]] std::string Joined(const std::string& text, const TextStyle& style) const;

  const Drawing& drawing_;
  FontBook& fonts_;
};

// The box around a text, under `map` from the entity's coordinates: of each piece the font's descent to its
// ascent, slanted as drawn, and the rules.
[[nodiscard]] Box BoxOf(const TextBlock& block, const Affine& map, FontSource& fonts);

// The map from heights of capitals, Y up, the base line starting at the origin, to the block's plane.
[[nodiscard]] Affine PieceMap(const TextPiece& piece);

}  // namespace hdiplot
