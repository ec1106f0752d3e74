// Lays out texts of paragraphs whose letters run downwards.
#pragma once

#include "hdiplot/text/text_block.h"

namespace hdiplot {

// Each paragraph is a column, whatever the entity's width, and the first is the leftmost. Underlines and the
// like are left out, and so are indents, tab stops and alignment, which are about lines.
[[nodiscard]] TextBlock LayOutVerticalMText(const MTextEntity& entity, const TextStyle& style,
                                            FontSource& fonts);

}  // namespace hdiplot
