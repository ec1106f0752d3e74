#include "bench/scene.h"

#include <algorithm>
#include <stdexcept>
#include <string>

#include "bench/random.h"
#include "bench/scene_drawing.h"
#include "bench/scene_texts.h"

namespace bench {
namespace {

Point InArea(Random& random) {
  const double x = random.Below(kA4.areaWidth);
  return {x, static_cast<double>(random.Below(kA4.areaHeight))};
}

Point Near(Random& random, Point center, int32_t reach) {
  const double x = center.x + random.Below(2 * reach) - reach;
  return {x, center.y + random.Below(2 * reach) - reach};
}

size_t Scaled(double count, double scale) { return std::max<size_t>(1, static_cast<size_t>(count * scale)); }

Scene RandomShapes(Kind kind, size_t count, size_t pointsPerShape) {
  Random random(20240607);
  Scene scene;
  scene.kind = kind;
  scene.pointsPerShape = pointsPerShape;
  scene.points.reserve(count * pointsPerShape);
  for (size_t i = 0; i < count * pointsPerShape; ++i) scene.points.push_back(InArea(random));
  return scene;
}

// Hexagons around the middle of a rectangle, some of which cross its edge.
Scene ClippedPolygons(double scale) {
  constexpr int32_t kWidth = 600;
  constexpr int32_t kHeight = 500;
  Random random(20240608);
  Scene scene;
  scene.kind = Kind::kClipped;
  scene.pointsPerShape = 6;
  scene.shapesPerClip = 100;
  const size_t clips = Scaled(200, scale);
  for (size_t i = 0; i < clips; ++i) {
    const double left = random.Below(kA4.areaWidth - kWidth);
    const double top = random.Below(kA4.areaHeight - kHeight);
    const double right = left + kWidth;
    const double bottom = top + kHeight;
    const auto channel = [&] { return static_cast<uint8_t>(random.Below(256)); };
    scene.clips.push_back(
        {{{{left, top}, {right, top}, {right, bottom}, {left, bottom}}}, {channel(), channel(), channel()}});
    for (size_t polygon = 0; polygon < scene.shapesPerClip; ++polygon) {
      const Point center = Near(random, {left + kWidth / 2.0, top + kHeight / 2.0}, 320);
      for (size_t corner = 0; corner < scene.pointsPerShape; ++corner) {
        scene.points.push_back(Near(random, center, 40));
      }
    }
  }
  return scene;
}

// Pages of alternating polylines of ten segments and single lines.
Scene RandomPages(size_t pageCount, size_t shapesPerPage) {
  constexpr uint32_t kLongShape = 11;
  constexpr uint32_t kShortShape = 2;
  Random random(20240610);
  Scene scene;
  scene.kind = Kind::kMixed;
  scene.pens.push_back({kLineWidth, {}, false, {}});
  scene.pages.resize(pageCount);
  for (std::vector<Step>& page : scene.pages) {
    page.push_back({Step::Kind::kPen, 0, 0});
    for (size_t shape = 0; shape < shapesPerPage; ++shape) {
      const uint32_t count = shape % 2 == 0 ? kLongShape : kShortShape;
      page.push_back({Step::Kind::kPolyline, static_cast<uint32_t>(scene.points.size()), count});
      for (uint32_t i = 0; i < count; ++i) scene.points.push_back(InArea(random));
    }
  }
  return scene;
}

}  // namespace

Scene MakeScene(std::string_view name, double scale) {
  if (name == "polylines") return RandomShapes(Kind::kStrokes, Scaled(100'000, scale), 11);
  if (name == "lines") return RandomShapes(Kind::kStrokes, Scaled(1'000'000, scale), 2);
  if (name == "polygons") return ClippedPolygons(scale);
  if (name == "curves") return RandomShapes(Kind::kCurves, Scaled(50'000, scale), 4);
  if (name == "texts") return RandomTexts(Scaled(10'000, scale));
  if (name == "drawing") return TiledDrawing(Scaled(200'000, scale));
  if (name == "pages") return RandomPages(200, Scaled(2'000, scale));
  throw std::invalid_argument("no such scene: " + std::string(name));
}

}  // namespace bench
