// The arrowheads that every CAD program knows by name, for drawings without a block for them.
#pragma once

#include <string>
#include <string_view>

#include "hdiplot/model/drawing.h"

namespace hdiplot {

// The folded name of a filled arrow's block.
inline const std::string kFilledArrow = "_closedfilled";

// Whether a line that ends in the arrow is cut off by the arrow's size, since the arrow's block draws the
// rest of it. `block` is a folded name, also below.
[[nodiscard]] bool CutsLine(std::string_view block);

// Appends the parts of the arrow, of size 1, its tip at the origin and pointing to the right, all by block. A
// filled arrow for an unknown name.
void AppendArrowhead(std::string_view block, Entities& parts);

// Attributes by which a part of a block looks like its INSERT.
[[nodiscard]] Attributes ByBlockAttributes();

}  // namespace hdiplot
