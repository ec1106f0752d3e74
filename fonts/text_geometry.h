// Where a run of text stands on the page, and what a text covers.
#pragma once

#include "composition/page_objects.h"
#include "engine/page.h"

namespace hdi {

// How a text lies in the dot space: angles in radians, dots, Y up.
struct TextPlacement {
  float x;
  float y;
  float angle;         // of the base line
  float obliqueAngle;  // shear to the right
  float widthFactor;
};

// The text matrix of a run that starts `advance` dots along the base line. It turns and shears and does not
// scale; `syntheticItalic` adds the shear of a face that was asked for italics and has none.
[[nodiscard]] Matrix ComputeRunMatrix(const TextPlacement& placement, float advance, bool syntheticItalic);

// The box around a text of that length and height, from the base line up, in dots relative to its start.
[[nodiscard]] engine::Rectangle TextExtent(double advance, double height, double angle);

}  // namespace hdi
