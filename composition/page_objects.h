// Page objects: plain values that live from their first point to the moment when the content generator has
// written them. Everything is in dots of the page's dot space, Y up.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

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

// Three consecutive Bezier points are one curve: two control points and its end.
struct PathPoint {
  float x;
  float y;
  PointType type;
  bool close;  // the segment that ends here closes its subpath
};

// A path may have millions of points.
using PathPoints = std::vector<PathPoint, BlockAllocator<PathPoint>>;

// A clip: one path under the nonzero winding rule. Objects share it and never change it.
struct Clip {
  explicit Clip(PathPoints clipPoints);

  // Whether both clip to the same points; types and close flags do not count. A point that is not a number
  // equals nothing, itself included.
  [[nodiscard]] bool SamePoints(const Clip& other) const;

  PathPoints points;
  bool comparable;  // no point is a not-a-number, so that the clip equals itself
};

using SharedClip = std::shared_ptr<const Clip>;

// What every object carries. `layer` is the object number of its optional content group, 0 for none.
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

// Lengths of dashes and gaps in turn, shared like a clip; null for a solid line.
using SharedDashes = std::shared_ptr<const std::vector<float>>;

struct PathObject {
  ObjectAttributes attributes;
  PathPoints points;
  SharedDashes dashArray;
  float dashPhase = 0.0F;  // pens have none; a stream says it with every array
  FillType fill = FillType::kNone;
  bool stroke = false;
};

// a b c d e f of ISO 32000-1:2008, 8.3.3.
using Matrix = std::array<float, 6>;

struct TextObject {
  ObjectAttributes attributes;
  Matrix matrix{1, 0, 0, 1, 0, 0};
  uint32_t font = 0;  // object number of the font's dictionary; 0: the base font Helvetica
  float fontSize = 0.0F;
  float charSpace = 0.0F;
  float horizontalScale = 100.0F;  // percent
  int renderMode = 0;
  std::vector<uint16_t> codes;  // two-byte character codes
};

struct ImageObject {
  ObjectAttributes attributes;
  Matrix matrix{1, 0, 0, 1, 0, 0};
  uint32_t image = 0;  // object number of the image's stream; 0: nothing to be seen
};

}  // namespace hdi
