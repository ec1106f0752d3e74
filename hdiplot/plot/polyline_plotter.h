// Draws polylines: as one stroked path if possible, as filled outlines where widths change.
#pragma once

#include <vector>

#include "hdiplot/model/drawing.h"
#include "hdiplot/plot/canvas.h"
#include "hdiplot/plot/polyline.h"

namespace hdiplot {

class PolylinePlotter {
 public:
  explicit PolylinePlotter(Canvas& canvas) : canvas_(canvas) {}

  // `stroke` is the pen for polylines without a width. `map` takes them to dots.
  void Plot(const PolylineEntity& polyline, const Affine& map, const Stroke& stroke);

 private:
  // How the last segment ends.
  enum class RunEnd {
    kOpen,
    kClosed,        // it meets the first one's start
    kClosedAround,  // the same, and the first one is repeated, so that their corner is joined like the others
  };
  struct Run {  // of segments
    size_t first;
    size_t count;
    RunEnd end;
  };

  void PlotSegments(const PolylineEntity& polyline, const Affine& map, const Stroke& stroke);
  void PlotWide(const PolylineEntity& polyline, const Affine& map, Stroke stroke, double width);
  void PlotTapered(const PolylineEntity& polyline, const Affine& map, const Stroke& stroke);
  void FillSegment(const PolylineEntity& polyline, size_t index, const Affine& map);
  void StrokeRun(const PolylineEntity& polyline, const Run& run, const Affine& map);
  void StrokeLines(const PolylineEntity& polyline, const Run& run, const Affine& map);
  [[nodiscard]] bool LoadRun(const PolylineEntity& polyline, const Run& run, const Affine& map);
  void AddToPath(const PolySegment& segment, Vec2 from, Vec2 to, const Affine& map);

  Canvas& canvas_;
  std::vector<PolySegment> segments_;  // of the current run, like the next
  std::vector<Vec2> ends_;             // of its segments, in dots; one more than there are segments
  std::vector<Cubic> cubics_;
};

}  // namespace hdiplot
