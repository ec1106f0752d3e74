// Gradients of hatches as bands of one colour each.
#pragma once

#include <vector>

#include "hdiplot/model/drawing.h"
#include "hdiplot/plot/boundaries.h"
#include "hdiplot/plot/canvas.h"
#include "hdiplot/plot/styles.h"

namespace hdiplot {

// The colours of the bands in order: as many as differ, up to `most` and 64. In a monochrome
// plot they are greys.
[[nodiscard]] std::vector<Rgb> BandColors(const HatchGradient& gradient, const Style& style, size_t most);

// The outlines of `count` nested convex areas, the first around all of `rings`. A band is the difference of
// an area and the next one. Curves are within `tolerance`. Empty when the gradient's plane or the rings are
// seen edge-on.
[[nodiscard]] std::vector<Ring> NestedOutlines(const HatchGradient& gradient, const std::vector<Ring>& rings,
                                               size_t count, double tolerance);

struct GradientBands {
  std::vector<Rgb> colors;
  std::vector<Ring> outlines;  // one for each colour
  bool opaque = true;
};

// Fills `rings` band by band; `map` takes them to dots.
void FillBands(Canvas& canvas, const GradientBands& bands, const std::vector<Ring>& rings, const Affine& map);

}  // namespace hdiplot
