#include "bench/scene.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace bench {
namespace {

// SplitMix64: small, and the same everywhere, unlike the distributions of the standard library.
class Random {
 public:
  explicit Random(uint64_t seed) : state_(seed) {}
  // A whole number from 0 to below `limit`.
  [[nodiscard]] int32_t Below(int32_t limit) {
    state_ += 0x9E3779B97F4A7C15;
    uint64_t bits = state_;
    bits = (bits ^ (bits >> 30)) * 0xBF58476D1CE4E5B9;
    bits = (bits ^ (bits >> 27)) * 0x94D049BB133111EB;
    bits ^= bits >> 31;
    return static_cast<int32_t>((bits >> 32) * static_cast<uint64_t>(limit) >> 32);
  }
  [[nodiscard]] Point InArea() {
    const double x = Below(kAreaWidth);
    return {x, static_cast<double>(Below(kAreaHeight))};
  }
  [[nodiscard]] Point Near(Point center, int32_t reach) {
    const double x = center.x + Below(2 * reach) - reach;
    return {x, center.y + Below(2 * reach) - reach};
  }

 private:
  uint64_t state_;
};

size_t Scaled(double count, double scale) { return std::max<size_t>(1, static_cast<size_t>(count * scale)); }

Scene RandomShapes(Kind kind, size_t count, size_t pointsPerShape) {
  Random random(20240607);
  Scene scene;
  scene.kind = kind;
  scene.pointsPerShape = pointsPerShape;
  scene.points.reserve(count * pointsPerShape);
  for (size_t i = 0; i < count * pointsPerShape; ++i) scene.points.push_back(random.InArea());
  return scene;
}

// Hexagons around the middle of a rectangle, some of them reaching over its edge.
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
    const double left = random.Below(kAreaWidth - kWidth);
    const double top = random.Below(kAreaHeight - kHeight);
    const double right = left + kWidth;
    const double bottom = top + kHeight;
    const auto channel = [&] { return static_cast<uint8_t>(random.Below(256)); };
    scene.clips.push_back(
        {{{{left, top}, {right, top}, {right, bottom}, {left, bottom}}}, {channel(), channel(), channel()}});
    for (size_t polygon = 0; polygon < scene.shapesPerClip; ++polygon) {
      const Point center = random.Near({left + kWidth / 2.0, top + kHeight / 2.0}, 320);
      for (size_t corner = 0; corner < scene.pointsPerShape; ++corner) {
        scene.points.push_back(random.Near(center, 40));
      }
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
  throw std::invalid_argument("no such scene: " + std::string(name));
}

}  // namespace bench
