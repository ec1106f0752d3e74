// Draws a dimension that has no block of its own.
#pragma once

#include "hdiplot/dxf/dimension_reader.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

// What the handles of the style lead to.
struct DimensionParts {
  Name textStyle{&kStandardStyle};
  double fixedTextHeight = 0;  // of the text style; 0: that of the dimension style
  Name arrow1{&kNoName};       // blocks, with the tip at the origin; empty: a filled arrowhead
  Name arrow2{&kNoName};
};

// The entities are by block to the dimension. Empty if its points measure nothing.
[[nodiscard]] Entities DimensionEntities(const Dimension& dimension, const DimensionParts& parts);

}  // namespace hdiplot
