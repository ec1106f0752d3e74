// Lays out paragraphs whose letters run downwards.
#pragma once

#include "hdiplot/text/text_block.h"

namespace hdiplot {

// Each paragraph is a column, whatever the entity's width; the first is the leftmost. Lines along the text,
// indents, tab stops, alignment and masks do not apply.
[[nodiscard]] TextBlock LayOutVerticalMText(const MTextEntity& entity, const TextStyle& style,
                                            FontSource& fonts);

}  // namespace hdiplot
