#include "hdiplot/plot/plot_drawing.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "hdiplot/plot/entities.h"
#include "hdiplot/plot/extents.h"

namespace hdiplot {

namespace {

bool IsClipped(const Shape& shape) {
  const auto* image = std::get_if<ImageEntity>(&shape);
  const auto* hatch = std::get_if<HatchEntity>(&shape);
  const auto* insert = std::get_if<InsertEntity>(&shape);
  if (insert != nullptr) return insert->clip != nullptr;
  return (image != nullptr && !image->clip.empty()) || (hatch != nullptr && hatch->gradient);
}

class PlotSink final : public ShapeSink {
 public:
  PlotSink(const Drawing& drawing, FontBook& fonts, ImageBook& images, Canvas& canvas,
           const ShapeScale& scale, Progress& progress)
      : drawing_(drawing),
        canvas_(canvas),
        scale_(scale),
        plotter_(canvas, scale, drawing, fonts, images),
        linked_(drawing, fonts),
        progress_(progress) {}

  void Put(const Shape& shape, const Affine& map, const Style& style) override {
    canvas_.UseLayer(style.layer->name);
    canvas_.UseAlpha(style.alpha);
    plotter_.Plot(shape, map, style);
    if (canvas_.TakeMissing()) ++tooFarOff_;
    if (cutLink_) linked_.Add(shape, map);
  }
  void BeginLink(const std::string& target, const Shape& shape) override;
  void EndLink() override;
  void Done(size_t entities) override { progress_.Advance(entities); }
  bool BeginViewport(const ViewportEntity& viewport, const Affine& map) override;
  void EndViewport() override {
    plotter_.SetScale(scale_);
    canvas_.EndView();
    --views_;
  }
  bool BeginClip(const BlockClip& clip, const Affine& map) override;
  void EndClip() override {
    linked_.EndClip();
    canvas_.EndView();
    --views_;
  }

  [[nodiscard]] uint64_t TooFarOff() const { return tooFarOff_; }
  // Dots per unit of the model, for each viewport so far.
  [[nodiscard]] const std::vector<double>& ViewScales() const { return viewScales_; }

 private:
  const Drawing& drawing_;
  Canvas& canvas_;
  ShapeScale scale_;
  std::vector<double> viewScales_;
  EntityPlotter plotter_;
  ShapeMeter linked_;
  Progress& progress_;
  size_t views_ = 0;                    // that are open: viewports and clips
  std::optional<std::string> cutLink_;  // the target of the open link, of clipped shapes
  uint64_t tooFarOff_ = 0;
};

// The driver ignores clips when it measures a link, so clipped shapes get a link of the visible area.
void PlotSink::BeginLink(const std::string& target, const Shape& shape) {
  if (views_ > 0 || IsClipped(shape)) {
    cutLink_ = target;
    linked_.Clear();
  } else {
    canvas_.BeginLink(target);
  }
}

void PlotSink::EndLink() {
  if (cutLink_) {
    canvas_.LinkArea(*cutLink_, linked_.Extents());
    cutLink_.reset();
  } else {
    canvas_.EndLink();
  }
}

// The viewport's outline on the layout. One without an area falls back to the rectangle.
Ring OutlineOf(const ViewportEntity& viewport, double tolerance) {
  HatchEntity area;
  area.loops = viewport.clip;
  const std::vector<Ring> rings = BoundaryRings(area, tolerance);
  const Box box = rings.empty() ? Box{} : BoxOf(rings.front());
  const bool isOutline = !box.Empty() && std::min(box.Width(), box.Height()) > tolerance;
  return isOutline ? rings.front() : FrameOf(viewport);
}

// In dots. `size` is in drawing units, or if negative a percentage of the sheet's height; 0 means 5 percent.
double PointSizeInDots(double size, double dotsPerUnit, const Sheet& sheet) {
  if (size > 0) return size * dotsPerUnit;
  return (size < 0 ? -size : 5) / 100 * sheet.height;
}

ShapeScale ScaleOf(const Drawing& drawing, const PlotOptions& options, const Sheet& sheet,
                   double dotsPerUnit) {
  ShapeScale scale;
  scale.dotsPerUnit = dotsPerUnit;
  scale.dotsPerLineTypeUnit = dotsPerUnit * drawing.lineTypeScale;
  scale.pointMode = drawing.pointMode;
  scale.pointSize = PointSizeInDots(drawing.pointSize, dotsPerUnit, sheet);
  scale.strokeComments = options.strokeComments;
  scale.greyImages = options.monochrome || options.grey;
  if (options.background) scale.paper = *options.background;
  return scale;
}

bool PlotSink::BeginViewport(const ViewportEntity& viewport, const Affine& map) {
  constexpr double kTolerance = 0.25;  // dots
  const Ring outline = Mapped(OutlineOf(viewport, kTolerance / map.LargestScale()), map);
  if (!std::ranges::all_of(outline, [](Vec2 p) { return Canvas::IsPlottable(p); })) {
    ++tooFarOff_;
    return false;
  }
  if (!canvas_.BeginView({outline})) return false;
  ShapeScale scale = scale_;
  scale.dotsPerUnit *= viewport.scale;
  if (!drawing_.paperLineTypes) scale.dotsPerLineTypeUnit *= viewport.scale;
  scale.pointSize = PointSizeInDots(drawing_.pointSize, scale.dotsPerUnit, canvas_.GetSheet());
  plotter_.SetScale(scale);
  viewScales_.push_back(scale.dotsPerUnit);
  ++views_;
  return true;
}

bool PlotSink::BeginClip(const BlockClip& clip, const Affine& map) {
  const Ring ring = Mapped(clip.outline, map);
  if (!std::ranges::all_of(ring, [](Vec2 p) { return Canvas::IsPlottable(p); })) {
    ++tooFarOff_;
    return false;
  }
  const Sheet& sheet = canvas_.GetSheet();
  const Box around{{-sheet.width, -sheet.height}, {2 * sheet.width, 2 * sheet.height}};
  if (!canvas_.BeginView(clip.isInverted ? Without({CornersOf(around)}, {ring}) : Area{ring})) return false;
  linked_.BeginClip(clip.isInverted ? around : BoxOf(ring));
  ++views_;
  return true;
}

size_t EntityCountOf(const Drawing& drawing, const Layout* layout) {
  if (layout == nullptr) return drawing.entities.size();
  size_t count = 0;
  ForEachEntity(drawing, *layout, [&count](const Entity&) { ++count; });
  return count;
}

// Whether there may be viewports or other clipped shapes.
bool HasClips(const DrawingPart& part) {
  const Drawing& drawing = *part.drawing;
  const auto hasClips = [](const auto& block) {
    return std::ranges::any_of(block.second.entities, IsClipped, &Entity::shape);
  };
  return part.layout != nullptr || std::ranges::any_of(drawing.entities, IsClipped, &Entity::shape) ||
         std::ranges::any_of(drawing.blocks, hasClips);
}

// A drawing at a fixed scale can be larger than the sheet.
bool FitsSheet(const Box& extents, const Affine& map, const Sheet& sheet) {
  constexpr double kOverhang = 1;  // dots; a fitted drawing may exceed the sheet by a rounding error
  const Box whole{{0, 0}, {sheet.width, sheet.height}};
  return whole.Contains(map(extents.low), kOverhang) && whole.Contains(map(extents.high), kOverhang);
}

// None for a drawing that is cut by less than is seen.
std::optional<CutPage> CutOf(const Box& extents, double dotsPerUnit, const Sheet& sheet) {
  constexpr double kOverhang = 0.1;  // millimetres
  const double unit = dotsPerUnit / sheet.dotsPerMillimetre;
  const CutPage cut{extents.Width() * unit, extents.Height() * unit, sheet.width / sheet.dotsPerMillimetre,
                    sheet.height / sheet.dotsPerMillimetre};
  const bool isCut = cut.width > cut.seenWidth + kOverhang || cut.height > cut.seenHeight + kOverhang;
  return isCut ? std::optional(cut) : std::nullopt;
}

}  // namespace

PlottedPage PlotDrawing(const DrawingPart& part, const PlotOptions& options, const Sheet& sheet,
                        FontBook& fonts, ImageBook& images, PlotDevice& device, Progress& progress) {
  const Drawing& drawing = *part.drawing;
  const Layout* layout = part.layout;
  progress.Start(EntityCountOf(drawing, layout));
  const double unit = layout != nullptr ? layout->millimetresPerUnit : drawing.millimetresPerUnit;
  const bool hasOwnSheet = HasOwnSheet(layout, options);
  const Affine map = hasOwnSheet ? LayoutToDots(part, options, sheet)
                                 : DrawingToDots(PageExtents(part), unit, options, sheet);

  ShapeScale scale = ScaleOf(drawing, options, sheet, map.LargestScale());
  if (layout != nullptr) scale.lineWeightFactor = layout->setup.weightFactor;
  Canvas canvas(device, sheet);
  if (!part.extents.Empty() && !FitsSheet(part.extents, map, sheet)) {
    canvas.ClipToSheet();
  } else if (HasClips(part)) {
    canvas.PrepareClips();
  }
  PlottedPage page;
  if (options.scale && !part.extents.Empty()) page.cut = CutOf(part.extents, map.LargestScale(), sheet);
  PlotSink sink(drawing, fonts, images, canvas, scale, progress);
  DrawingWalk walk(drawing, options, sink);
  const Box area = hasOwnSheet ? PlottedArea(part) : Box{};
  const bool isCut = !area.Empty() && !(area.Contains(part.extents.low) && area.Contains(part.extents.high));
  if (!isCut) {
    walk.Run(map, layout);
  } else if (canvas.BeginView({Mapped(CornersOf(area), map)})) {
    walk.Run(map, layout);
    canvas.EndView();
  }
  page.dotsPerUnit = sink.ViewScales();
  page.leftOut = {walk.Unwalked(), sink.TooFarOff()};
  if (page.dotsPerUnit.empty() && !part.extents.Empty()) page.dotsPerUnit = {scale.dotsPerUnit};
  return page;
}

}  // namespace hdiplot
