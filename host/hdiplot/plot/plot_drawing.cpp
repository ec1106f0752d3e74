#include "host/hdiplot/plot/plot_drawing.h"

#include <string>
#include <vector>

#include "host/hdiplot/plot/entities.h"
#include "host/hdiplot/plot/extents.h"

namespace hdiplot {

namespace {

class PlotSink final : public ShapeSink {
 public:
  PlotSink(const Drawing& drawing, FontBook& fonts, ImageBook& images, Canvas& canvas,
           const ShapeScale& scale, Progress& progress)
      : canvas_(canvas), plotter_(canvas, scale, drawing, fonts, images), progress_(progress) {}

  void Put(const Shape& shape, const Affine& map, const Style& style) override {
    canvas_.UseLayer(style.layer->name);
    canvas_.UseAlpha(style.alpha);
    plotter_.Plot(shape, map, style);
    if (canvas_.TakeMissing()) ++tooFarOff_;
  }
  void BeginLink(const std::string& target) override { canvas_.BeginLink(target); }
  void EndLink() override { canvas_.EndLink(); }
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

// A scale of the user's can make a drawing larger than the sheet.
bool FitsSheet(const Box& extents, const Affine& map, const Sheet& sheet) {
  constexpr double kOverhang = 1;  // dots; a drawing that has been fitted may stick out by a rounding error
  const Vec2 corners[] = {map(extents.low), map(extents.high)};
  bool fits = true;
  for (const Vec2& p : corners) {
    fits = fits && p.x >= -kOverhang && p.x <= sheet.width + kOverhang && p.y >= -kOverhang &&
           p.y <= sheet.height + kOverhang;
  }
  return fits;
}

}  // namespace

PlottedPage PlotDrawing(const Drawing& drawing, const PlotOptions& options, const Sheet& sheet,
                        FontBook& fonts, ImageBook& images, PlotDevice& device, Progress& progress) {
  const Box extents = PlottedExtents(drawing, options, fonts);
  progress.Start(drawing.entities.size());
  const Affine map = DrawingToDots(extents, drawing.millimetresPerUnit, options, sheet);

  ShapeScale scale;
  scale.dotsPerUnit = map.LargestScale();
  scale.dotsPerLineTypeUnit = scale.dotsPerUnit * drawing.lineTypeScale;
  scale.pointMode = drawing.pointMode;
  scale.pointSize = PointSizeInDots(drawing.pointSize, scale.dotsPerUnit, sheet);
  scale.strokeComments = options.strokeComments;
  if (options.background) scale.paper = *options.background;
  Canvas canvas(device, sheet);
  if (!extents.Empty() && !FitsSheet(extents, map, sheet)) canvas.ClipToSheet();
  PlotSink sink(drawing, fonts, images, canvas, scale, progress);
  DrawingWalk walk(drawing, options, sink);
  walk.Run(map);
  return {extents.Empty() ? 0 : scale.dotsPerUnit, {walk.Unwalked(), sink.TooFarOff()}};
}

}  // namespace hdiplot
