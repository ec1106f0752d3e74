// The scenes that all contestants draw. A scene depends only on its name and scale: it comes from an example
// drawing or from a random generator with a fixed seed, so it is the same on every machine.
//
// Coordinates are whole dots at 600 dots per inch, Y down, from the upper left corner of the drawing area.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

struct Point {
  double x;
  double y;
};

struct Color {
  uint8_t red;
  uint8_t green;
  uint8_t blue;
};

inline constexpr int32_t kDotsPerInch = 600;
inline constexpr double kPointsPerDot = 72.0 / kDotsPerInch;
inline constexpr int32_t kTenthsPerInch = 254;  // of a millimetre

// A sheet and its drawing area: the full width and, from the bottom, the largest height that is an integer
// both in dots and in tenths of a millimetre, so that contestants with Y up get whole dots, too.
struct Sheet {
  int32_t widthTenths;
  int32_t heightTenths;
  int32_t areaWidth;   // dots
  int32_t areaHeight;  // dots, a multiple of 300

  [[nodiscard]] constexpr double WidthPoints() const { return widthTenths * 72.0 / kTenthsPerInch; }
  [[nodiscard]] constexpr double HeightPoints() const { return heightTenths * 72.0 / kTenthsPerInch; }
  // Distance from the sheet's upper edge to the area.
  [[nodiscard]] constexpr double TopMarginPoints() const {
    return HeightPoints() - areaHeight * kPointsPerDot;
  }
  [[nodiscard]] constexpr int32_t TopMarginTenths() const {
    return heightTenths - areaHeight * kTenthsPerInch / kDotsPerInch;
  }
};

inline constexpr Sheet kA4 = {2100, 2970, 4960, 6900};
inline constexpr Sheet kA0 = {8410, 11890, 19866, 27900};

inline constexpr int32_t kLineWidth = 2;  // dots, for scenes without pens

enum class Kind : uint8_t {
  kStrokes,  // each shape is a polyline of its own
  kCurves,   // each shape is four points of a cubic curve
  kClipped,  // each shape is a filled polygon; groups share a clip and a colour
  kTexts,    // no shapes: texts
  kMixed,    // no shapes: pages of steps
};

struct Clip {
  std::array<Point, 4> corners;
  Color color;
};

struct Text {
  std::u16string units;  // none of them a surrogate
  Point start;           // of the base line
  int32_t height;        // of the em, dots
  int32_t angle;         // of the base line, tenths of a degree counter-clockwise, in [0, 3600)
  size_t font;           // of the scene's families
  Color color;
};

// The direction of a text's base line, Y down. Exact for quarter turns.
[[nodiscard]] Point DirectionOf(const Text& text);

struct Pen {
  int32_t width;  // dots
  Color color;
  bool isRound;                  // caps and joins are round, otherwise flat and mitred
  std::vector<uint32_t> dashes;  // lengths in dots, alternately on and off; empty: solid
};

// Polygons that are filled together by the even-odd rule. Their points are consecutive.
struct Polygons {
  size_t first;  // of the scene's points
  std::vector<uint32_t> counts;
};

// An operation of a mixed scene. Pen and brush stay in effect until the next of their kind or the end of the
// page; each page begins with a pen.
struct Step {
  enum class Kind : uint8_t {
    kPen,
    kBrush,
    kPolyline,
    kCurves,  // a start and groups of three points
    kPolygons,
    kText,  // in the colour of the brush
  };
  Kind kind;
  uint32_t index;  // into the scene's pens, brushes, polygons or texts, otherwise its points
  uint32_t count;  // of points, for polylines and curves
};

struct Scene {
  Kind kind = Kind::kStrokes;
  Sheet sheet = kA4;
  size_t pointsPerShape = 0;  // 0 for scenes without shapes
  std::vector<Point> points;  // shape after shape, or those of the steps
  std::vector<Clip> clips;    // kClipped only
  size_t shapesPerClip = 0;
  std::vector<std::string> families;  // of the texts' fonts, each of which must be installed
  std::vector<Text> texts;
  std::vector<Pen> pens;  // this and what follows: kMixed only
  std::vector<Color> brushes;
  std::vector<Polygons> polygons;
  std::vector<std::vector<Step>> pages;

  [[nodiscard]] size_t PageCount() const { return kind == Kind::kMixed ? pages.size() : 1; }
  [[nodiscard]] size_t ShapeCount() const { return points.size() / pointsPerShape; }
  [[nodiscard]] std::span<const Point> Shape(size_t index) const {
    return {points.data() + index * pointsPerShape, pointsPerShape};
  }
  [[nodiscard]] std::span<const Point> Points(const Step& step) const {
    return {points.data() + step.index, step.count};
  }
};

// `scale` multiplies the number of shapes, texts or steps, not of pages. Throws std::invalid_argument for a
// name that is not in scene_names.h, std::runtime_error if a file of the scene cannot be read.
[[nodiscard]] Scene MakeScene(std::string_view name, double scale);

}  // namespace bench
