// Page objects: plain values, built point by point and written by the content generator. All coordinates are
// in dots of the page's dot space, Y up.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/matrix.h"
#include "platform/memory.h"

namespace hdi {

struct Color {
  uint8_t red = 0;
  uint8_t green = 0;
  uint8_t blue = 0;
  bool operator==(const Color&) const = default;
};

enum class BlendMode : uint8_t { kNormal, kDarken };
enum class FillType : uint8_t { kNone, kEvenOdd, kWinding };
enum class PointType : uint8_t { kLine, kBezier, kMove };

// Three consecutive Bezier points make one curve: two control points and the end point.
struct PathPoint {
  float x;
  float y;
  PointType type;
  bool close;  // the segment that ends here closes its subpath
};

// A path may have millions of points.
using PathPoints = std::vector<PathPoint, BlockAllocator<PathPoint>>;

// A clip path under the nonzero winding rule. Shared by objects and immutable.
struct Clip {
  explicit Clip(PathPoints clipPoints);

  // Whether both have the same points; types and close flags do not count. A NaN point is unequal to every
  // point, itself included.
  [[nodiscard]] bool SamePoints(const Clip& other) const;

  PathPoints points;
  bool comparable;  // no point is NaN, so the clip equals itself
};

using SharedClip = std::shared_ptr<const Clip>;

// Attributes common to all objects. `layer` is the object number of the optional content group, 0 for none.
struct ObjectAttributes {
  Color strokeColor;
  Color fillColor;
  float strokeAlpha = 1.0F;
  float fillAlpha = 1.0F;
  BlendMode blendMode = BlendMode::kNormal;
  float lineWidth = 1.0F;
  uint8_t lineCap = 0;
  uint8_t lineJoin = 0;
  uint32_t layer = 0;
  SharedClip clip;
};

// Alternating lengths of dashes and gaps, shared like a clip; null for a solid line.
using SharedDashes = std::shared_ptr<const std::vector<float>>;

struct PathObject {
  ObjectAttributes attributes;
  PathPoints points;
  SharedDashes dashArray;
  float dashPhase = 0.0F;  // always 0 for pens; written with every array
  FillType fill = FillType::kNone;
  bool stroke = false;
};

struct TextObject {
  ObjectAttributes attributes;
  Matrix matrix{1, 0, 0, 1, 0, 0};
  uint32_t font = 0;  // object number of the font's dictionary; 0: the standard font Helvetica
  float fontSize = 0.0F;
  float charSpace = 0.0F;
  float horizontalScale = 100.0F;  // percent
  int renderMode = 0;
  std::vector<uint16_t> codes;  // two-byte character codes
};

struct ImageObject {
  ObjectAttributes attributes;
  Matrix matrix{1, 0, 0, 1, 0, 0};
  uint32_t image = 0;  // object number of the image's stream; 0: not visible
};

}  // namespace hdi
