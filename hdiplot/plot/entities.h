// Draws the shapes of a drawing, by kind.
#pragma once

#include "hdiplot/model/drawing.h"
#include "hdiplot/plot/boundaries.h"
#include "hdiplot/plot/canvas.h"
#include "hdiplot/plot/image_plotter.h"
#include "hdiplot/plot/line_type_signs.h"
#include "hdiplot/plot/polyline_plotter.h"
#include "hdiplot/plot/styles.h"
#include "hdiplot/plot/text_plotter.h"
#include "hdiplot/text/text_setter.h"

namespace hdiplot {

// Settings for all shapes of a drawing.
struct ShapeScale {
  double dotsPerUnit = 1;          // of the drawing
  double dotsPerLineTypeUnit = 1;  // the same with the drawing's line type scale
  int pointMode = 0;               // as in Drawing
  double pointSize = 0;            // dots
  bool strokeComments = false;     // texts in strokes have comments
  Rgb paper{255, 255, 255};        // the sheet's colour
  bool greyImages = false;         // else in colour
  double lineWeightFactor = 1;     // 0: all lines are as thin as possible
};

class EntityPlotter {
 public:
  // Keeps references to all but the scale. The shapes are those of `drawing` and have its text styles.
  EntityPlotter(Canvas& canvas, const ShapeScale& scale, const Drawing& drawing, FontBook& fonts,
                ImageBook& images)
      : canvas_(canvas),
        scale_(scale),
        polylines_(canvas),
        texts_(drawing, fonts),
        textPlotter_(canvas, fonts, scale.strokeComments),
        signs_(canvas, texts_, textPlotter_),
        imagePlotter_(canvas, drawing, images, scale.paper, scale.greyImages) {}

  // Replaces the scale: shapes of the model in a viewport have one of their own.
  void SetScale(const ShapeScale& scale) { scale_ = scale; }

  // Draws `shape` in `style`; `map` takes its coordinates to dots. Does nothing for an InsertEntity.
  void Plot(const Shape& shape, const Affine& map, const Style& style);

 private:
  [[nodiscard]] Stroke StrokeOf(const Style& style) const;
  void UseStyle();
  void DrawSigns(const LineEntity& line);
  void DrawSigns(const PolylineEntity& polyline);
  void DrawSigns(const ConicArc& arc);
  void AppendFlat(const ConicArc& arc, std::vector<Vec2>& points) const;

  void Draw(const LineEntity& line);
  void Draw(const PolylineEntity& polyline);
  void Draw(const MeshEntity& mesh);
  void Draw(const ArcEntity& arc);
  void Draw(const EllipseEntity& ellipse);
  void Draw(const SplineEntity& spline);
  void Draw(const PointEntity& point);
  void Draw(const RayEntity& ray);
  void Draw(const SolidEntity& solid);
  void Draw(const FaceEntity& face);
  void Draw(const TextEntity& text);
  void Draw(const MTextEntity& text);
  void Draw(const ToleranceEntity& tolerance);
  void Draw(const HatchEntity& hatch);
  void Draw(const ImageEntity& image) { imagePlotter_.Plot(image, map_, StrokeOf(*style_)); }
  void Draw(const WipeoutEntity& wipeout) { imagePlotter_.Plot(wipeout, map_); }
  void Draw(const ViewportEntity& viewport);
  void Draw(const InsertEntity& /*insert*/) {}

  void DrawText(const TextBlock& block);
  void DrawPanel(const TextPanel& panel, const Affine& map);
  void DrawPointFigure(Vec2 at);
  void FillHatch(const std::vector<Ring>& rings, Rgb color);
  [[nodiscard]] bool IsOpaque() const { return style_->alpha == 255; }
  [[nodiscard]] size_t MostBands(const std::vector<Ring>& rings) const;
  void FillGradient(const HatchGradient& gradient, const std::vector<Ring>& rings, double tolerance);
  void DrawPlotFill(const std::vector<Ring>& rings);
  void DrawPattern(const HatchEntity& hatch, const std::vector<Ring>& rings);

  Canvas& canvas_;
  ShapeScale scale_;
  PolylinePlotter polylines_;
  TextSetter texts_;
  TextPlotter textPlotter_;
  LineTypeSigns signs_;
  ImagePlotter imagePlotter_;
  Affine map_;  // of the current shape, like the next
  const Style* style_ = nullptr;
  std::vector<Vec2> points_;
  std::vector<Cubic> cubics_;
};

}  // namespace hdiplot
