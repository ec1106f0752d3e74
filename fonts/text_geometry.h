// Position and extent of text on the page.
#pragma once

#include "engine/page.h"
#include "platform/matrix.h"

namespace hdi {

// Placement of a text in dot space: dots, Y up, angles in radians.
struct TextPlacement {
  float x;
  float y;
  float angle;         // of the baseline
  float obliqueAngle;  // shear to the right
  float widthFactor;
};

// Returns the text matrix of a run that starts `advance` dots along the baseline. It rotates and shears but
// does not scale; `syntheticItalic` adds the slant of a face that was asked for italics and has none.
[[nodiscard]] Matrix ComputeRunMatrix(const TextPlacement& placement, float advance, bool syntheticItalic);

// Returns the bounding box, in dots relative to the text's start, of a text of this length and height above
// the baseline. `angle` is in radians.
[[nodiscard]] engine::Rectangle TextExtent(double advance, double height, double angle);

}  // namespace hdi
