// Lays out the texts of one drawing in its own styles.
#pragma once

#include <string>

#include "hdiplot/model/drawing.h"
#include "hdiplot/text/font_book.h"
#include "hdiplot/text/text_block.h"

namespace hdiplot {

class TextSetter {
 public:
  // Refers to both from then on.
  TextSetter(const Drawing& drawing, FontBook& fonts) : drawing_(drawing), fonts_(fonts) {}

  [[nodiscard]] TextBlock Set(const TextEntity& text);
  [[nodiscard]] TextBlock Set(const MTextEntity& text);

 private:
  [[nodiscard]] const TextStyle& StyleOf(const std::string& name) const;
  [[nodiscard]] std::string Joined(const std::string& text, const TextStyle& style) const;

  const Drawing& drawing_;
  FontBook& fonts_;
};

// The box of what a text covers, under `map` from the entity's coordinates: each piece from its lowest to its
// highest letters, slanted as it is drawn, and the rules.
[[nodiscard]] Box BoxOf(const TextBlock& block, const Affine& map, FontSource& fonts);

// From the heights of a font's capitals, Y up and the base line's start at the origin, to the block's plane.
[[nodiscard]] Affine PieceMap(const TextPiece& piece);

}  // namespace hdiplot
