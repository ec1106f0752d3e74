// DIMENSION, as far as it is drawn without a block of its own.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "hdiplot/dxf/dimension_style.h"
#include "hdiplot/geometry/points.h"

namespace hdiplot {

struct Dimension {
  enum class Kind : uint8_t { kRotated, kAligned, kAngular, kDiameter, kRadius, kThreePoints, kOrdinate };
  Kind kind = Kind::kRotated;
  // The points are those of the groups 10 and 13 to 16; what they are depends on the kind.
  Vec2 line, first, second, third, arc;
  std::optional<Vec2> textMiddle;
  Vec2 direction{1, 0};  // of kRotated
  double oblique = 0;    // radians from the dimension line to the extension lines; 0: they are upright
  std::optional<double> textRotation;  // radians
  bool isAlongX = false;               // of kOrdinate
  std::string text;                    // an MTEXT's, with "<>" for the value; empty: the value alone
  DimensionStyle style;
};

// None for one of an unknown kind or without points. `styles` are by folded name; `fallback` is for a style
// that is not among them.
[[nodiscard]] std::optional<Dimension> ReadDimension(const DxfObject& entity,
                                                     const std::map<std::string, DimensionStyle>& styles,
                                                     const DimensionStyle& fallback,
                                                     const TextDecoder& decoder);

}  // namespace hdiplot
