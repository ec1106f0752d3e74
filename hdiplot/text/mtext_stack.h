// Fractions and tolerances: two small texts that stand where one character would.
#pragma once

#include "hdiplot/text/mtext_parser.h"

namespace hdiplot {

// Starts at the origin, which is on the base line of the text around it.
struct StackBox {
  std::vector<TextPiece> pieces;
  std::vector<TextRule> rules;
  double width = 0;
  double low = 0;  // of its foot and its head, over the base line
  double high = 0;
};

// `look` is that of the text around it, whose capitals the stack keeps level with.
[[nodiscard]] StackBox LayOutStack(const TextStack& stack, const TextLook& look, SpanLevel level,
                                   FontSource& fonts);

}  // namespace hdiplot
