// The scenes that all contestants draw. A scene is fixed by its name and its scale: the numbers come from a
// generator of our own with a fixed seed, so that they are the same on every machine and for everybody.
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

// The sheet, A4 upright. The drawing area is its full width and so much of its height, from the bottom up, as
// makes a whole number of dots: contestants with Y up then see whole dots, too.
inline constexpr double kDotsPerInch = 600;
inline constexpr double kPointsPerDot = 72.0 / kDotsPerInch;
inline constexpr int32_t kSheetWidthTenths = 2100;
inline constexpr int32_t kSheetHeightTenths = 2970;
inline constexpr int32_t kTopMarginTenths = 49;
inline constexpr int32_t kAreaWidth = 4960;   // dots
inline constexpr int32_t kAreaHeight = 6900;  // dots: 2921 tenths of a millimetre
inline constexpr double kSheetWidthPoints = kSheetWidthTenths * 72.0 / 254;
inline constexpr double kSheetHeightPoints = kSheetHeightTenths * 72.0 / 254;

inline constexpr double kLineWidth = 2;  // dots

enum class Kind : uint8_t {
  kStrokes,  // each shape is a polyline of its own
  kCurves,   // each shape is four points of a cubic curve
  kClipped,  // each shape is a filled polygon; every so many share a clip and a colour
  kTexts,    // no shapes: texts
};

struct Clip {
  std::array<Point, 4> corners;
  Color color;
};

// The families of the texts. Each must be installed.
inline constexpr std::array<std::string_view, 3> kFontFamilies = {"DejaVu Sans", "Liberation Serif",
                                                                  "DejaVu Sans Mono"};

struct Text {
  std::u16string units;  // none of them a surrogate
  Point start;           // of the base line
  int32_t height;        // of the em, dots
  int32_t angle;         // of the base line, tenths of a degree counter-clockwise, from 0 to below a turn
  size_t font;           // of kFontFamilies
  Color color;
};

// The way of a text's base line, in coordinates with Y down. Quarter turns are exact.
[[nodiscard]] Point DirectionOf(const Text& text);

struct Scene {
  Kind kind = Kind::kStrokes;
  size_t pointsPerShape = 0;
  std::vector<Point> points;  // shape after shape
  std::vector<Clip> clips;    // kClipped only
  size_t shapesPerClip = 0;
  std::vector<Text> texts;  // kTexts only

  [[nodiscard]] size_t ShapeCount() const { return points.size() / pointsPerShape; }
  [[nodiscard]] std::span<const Point> Shape(size_t index) const {
    return {points.data() + index * pointsPerShape, pointsPerShape};
  }
};

struct SceneName {
  std::string_view name;
  std::string_view title;
  double allowedSize;  // what we ask of our file, as a multiple of the smallest peer's
};

inline constexpr std::array<SceneName, 5> kScenes = {{
    {"polylines", "100,000 polylines of 10 segments", 1.01},
    {"lines", "1,000,000 single lines", 1.01},
    {"polygons", "20,000 filled polygons under 200 clips", 1.01},
    {"curves", "50,000 Bezier curves", 1.01},
    {"texts", "10,000 texts in three fonts", 1.15},
}};

// `scale` multiplies the number of shapes or texts. Throws std::invalid_argument for a name that is none of
// the above.
[[nodiscard]] Scene MakeScene(std::string_view name, double scale);

}  // namespace bench
