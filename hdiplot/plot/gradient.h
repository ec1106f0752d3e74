// Gradients of hatches, in bands of one colour each.
#pragma once

#include <vector>

#include "hdiplot/model/drawing.h"
#include "hdiplot/plot/boundaries.h"
#include "hdiplot/plot/canvas.h"
#include "hdiplot/plot/styles.h"

namespace hdiplot {

// The bands' colours in their order, from one that differs from the next as little as `most` bands allow, or
// 64. One colour when nothing can be seen of the gradient, as in a monochrome plot.
[[nodiscard]] std::vector<Rgb> BandColors(const HatchGradient& gradient, const Style& style, size_t most);

// Outlines of `count` convex areas, each within the one before; the first lies around all of `rings`. A band
// is what an area has that the next one has not. Curves are within `tolerance`. Empty when the gradient's
// plane or the rings are seen end on.
[[nodiscard]] std::vector<Ring> NestedOutlines(const HatchGradient& gradient, const std::vector<Ring>& rings,
                                               size_t count, double tolerance);

struct GradientBands {
  std::vector<Rgb> colors;
  std::vector<Ring> outlines;  // as many
  bool opaque = true;
};

// Fills `rings` band by band; `map` leads to dots.
void FillBands(Canvas& canvas, const GradientBands& bands, const std::vector<Ring>& rings, const Affine& map);

}  // namespace hdiplot
