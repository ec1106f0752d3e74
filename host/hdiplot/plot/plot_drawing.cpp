#include "host/hdiplot/plot/plot_drawing.h"

#include <vector>

#include "host/hdiplot/plot/entities.h"
#include "host/hdiplot/plot/extents.h"

namespace hdiplot {

namespace {

class PlotSink final : public ShapeSink {
 public:
  PlotSink(const Drawing& drawing, FontBook& fonts, Canvas& canvas, const ShapeScale& scale,
           Progress& progress)
      : canvas_(canvas), plotter_(canvas, scale, drawing, fonts), progress_(progress) {}

  void Put(const Shape& shape, const Affine& map, const Style& style) override {
    plotter_.Plot(shape, map, style);
    if (canvas_.TakeMissing()) ++tooFarOff_;
  }
  void Done(size_t entities) override { progress_.Advance(entities); }

  [[nodiscard]] uint64_t TooFarOff() const { return tooFarOff_; }

 private:
  Canvas& canvas_;
  EntityPlotter plotter_;
  Progress& progress_;
  uint64_t tooFarOff_ = 0;
};

// In dots: given in drawing units, or as a percentage of the sheet's height; 5 percent when not given at all.
double PointSizeInDots(double size, double dotsPerUnit, const Sheet& sheet) {
  if (size > 0) return size * dotsPerUnit;
  return (size < 0 ? -size : 5) / 100 * sheet.height;
}

// Keeps a drawing that is larger than the sheet, which a scale of the user's can make it, off the margins.
// The driver takes the first clip of a page for the page's own, and any later one for a clip.
void ClipToSheet(const Box& extents, const Affine& map, const Sheet& sheet, PlotDevice& device) {
  constexpr double kOverhang = 1;  // dots; a drawing that has been fitted may stick out by a rounding error
  const Vec2 corners[] = {map(extents.low), map(extents.high)};
  bool fits = true;
  for (const Vec2& p : corners) {
    fits = fits && p.x >= -kOverhang && p.x <= sheet.width + kOverhang && p.y >= -kOverhang &&
           p.y <= sheet.height + kOverhang;
  }
  if (fits) return;
  const std::vector<std::vector<hdi::HT_Double_Point>> area{
      {{0, 0}, {sheet.width, 0}, {sheet.width, sheet.height}, {0, sheet.height}}};
  device.SetClip(area);
  device.SetClip(area);
}

}  // namespace

LeftOut PlotDrawing(const Drawing& drawing, const PlotOptions& options, const Sheet& sheet, FontBook& fonts,
                    PlotDevice& device, Progress& progress) {
  const Box extents = PlottedExtents(drawing, options, fonts);
  progress.Start(drawing.entities.size());
  const Affine map = DrawingToDots(extents, drawing.millimetresPerUnit, options, sheet);
  if (!extents.Empty()) ClipToSheet(extents, map, sheet, device);

  ShapeScale scale;
  scale.dotsPerUnit = map.LargestScale();
  scale.dotsPerLineTypeUnit = scale.dotsPerUnit * drawing.lineTypeScale;
  scale.pointMode = drawing.pointMode;
  scale.pointSize = PointSizeInDots(drawing.pointSize, scale.dotsPerUnit, sheet);
  Canvas canvas(device, sheet);
  PlotSink sink(drawing, fonts, canvas, scale, progress);
  DrawingWalk walk(drawing, options, sink);
  walk.Run(map);
  return {walk.Unwalked(), sink.TooFarOff()};
}

}  // namespace hdiplot
