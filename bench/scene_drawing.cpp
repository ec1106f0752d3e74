#include "bench/scene_drawing.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

#include "bench/drawing_trace.h"

namespace bench {
namespace {

// The trace's sheet is A4 in landscape at the scenes' resolution.
constexpr double kTraceHeight = 4960;  // dots

constexpr int32_t kColumns = 5;
constexpr int32_t kRows = 10;
constexpr int32_t kTileWidth = kA0.areaWidth / kColumns;
constexpr int32_t kTileHeight = kA0.areaHeight / kRows;
constexpr double kTileScale = kTileHeight / kTraceHeight;

int32_t ScaledLength(double dots) {
  return dots > 0 ? std::max(1, static_cast<int32_t>(std::lround(dots * kTileScale))) : 0;
}

Pen ScaledPen(Pen pen) {
  pen.width = ScaledLength(pen.width);
  for (uint32_t& dash : pen.dashes) dash = static_cast<uint32_t>(ScaledLength(dash));
  return pen;
}

// Adds copies of the plan to the scene's page.
class Tiler {
 public:
  Tiler(const Scene& plan, Scene& scene) : plan_(plan), scene_(scene) {}

  // Adds the plan or, for the last copy, the part of it that completes `objectCount`.
  void AddTile(int32_t tile, size_t objectCount) {
    corner_ = {static_cast<double>(tile % kColumns * kTileWidth),
               static_cast<double>(tile / kColumns % kRows * kTileHeight)};
    for (const Step& step : plan_.pages.front()) {
      if (objects_ == objectCount) return;
      AddStep(step);
    }
  }

  [[nodiscard]] size_t Objects() const { return objects_; }

 private:
  [[nodiscard]] Point Placed(Point point) const {
    return {std::round(corner_.x + point.x * kTileScale), std::round(corner_.y + point.y * kTileScale)};
  }

  uint32_t AddPoints(size_t first, size_t count) {
    const size_t index = scene_.points.size();
    for (size_t i = first; i < first + count; ++i) scene_.points.push_back(Placed(plan_.points[i]));
    return static_cast<uint32_t>(index);
  }

  void AddStep(Step step) {
    if (step.kind != Step::Kind::kPen && step.kind != Step::Kind::kBrush) ++objects_;
    switch (step.kind) {
      case Step::Kind::kPen:
      case Step::Kind::kBrush:
        break;
      case Step::Kind::kPolyline:
      case Step::Kind::kCurves:
        step.index = AddPoints(step.index, step.count);
        break;
      case Step::Kind::kPolygons:
        step.index = AddPolygons(plan_.polygons[step.index]);
        break;
      case Step::Kind::kText:
        step.index = AddText(plan_.texts[step.index]);
        break;
    }
    scene_.pages.front().push_back(step);
  }

  uint32_t AddPolygons(Polygons polygons) {
    size_t count = 0;
    for (const uint32_t corners : polygons.counts) count += corners;
    polygons.first = AddPoints(polygons.first, count);
    scene_.polygons.push_back(std::move(polygons));
    return static_cast<uint32_t>(scene_.polygons.size() - 1);
  }

  uint32_t AddText(Text text) {
    text.start = Placed(text.start);
    text.height = ScaledLength(text.height);
    scene_.texts.push_back(std::move(text));
    return static_cast<uint32_t>(scene_.texts.size() - 1);
  }

  const Scene& plan_;
  Scene& scene_;
  Point corner_{};
  size_t objects_ = 0;
};

}  // namespace

Scene TiledDrawing(size_t objectCount) {
  const Scene plan = ReadTrace(BENCH_DRAWING_TRACE);
  Scene scene;
  scene.kind = Kind::kMixed;
  scene.sheet = kA0;
  scene.families = plan.families;
  scene.brushes = plan.brushes;
  for (const Pen& pen : plan.pens) scene.pens.push_back(ScaledPen(pen));
  scene.pages.resize(1);
  Tiler tiler(plan, scene);
  tiler.AddTile(0, objectCount);
  if (tiler.Objects() == 0) throw std::runtime_error("the plan's trace draws nothing");
  for (int32_t tile = 1; tiler.Objects() < objectCount; ++tile) tiler.AddTile(tile, objectCount);
  return scene;
}

}  // namespace bench
