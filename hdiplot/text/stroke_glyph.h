// A character drawn with a pen.
#pragma once

#include <vector>

#include "hdiplot/model/drawing.h"

namespace hdiplot {

// In heights of capitals, Y up, the base line at 0.
struct StrokeGlyph {
  double advance = 0;
  std::vector<std::vector<Vec2>> strokes;  // polylines
};

}  // namespace hdiplot
