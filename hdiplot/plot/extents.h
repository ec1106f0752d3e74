// How large shapes are, and what is plotted on a page.
#pragma once

#include <vector>

#include "hdiplot/geometry/curves.h"
#include "hdiplot/geometry/transform.h"
#include "hdiplot/model/drawing.h"
#include "hdiplot/plot/plot_options.h"
#include "hdiplot/text/font_book.h"
#include "hdiplot/text/text_setter.h"

namespace hdiplot {

// The box around shapes. Exact for lines, arcs and splines; texts are as high as their fonts; polylines have
// their widths. Without line weights and point symbols.
class ShapeMeter {
 public:
  // Keeps references to both. The shapes are those of `drawing` and have its text styles.
  ShapeMeter(const Drawing& drawing, FontBook& fonts) : fonts_(fonts), texts_(drawing, fonts) {}

  // `map` takes the shape's coordinates to those of the box. An InsertEntity adds nothing.
  void Add(const Shape& shape, const Affine& map);

  [[nodiscard]] const Box& Extents() const { return box_; }

  void Clear() { box_ = {}; }

  // Of what is added in between, only the part within `clip` counts. Clips nest.
  void BeginClip(const Box& clip);
  void EndClip();

 private:
  struct Clip {
    Box within;
    Box before;  // the extents when it began
  };

  void AddPoint(Vec2 p, double around = 0) { box_.Add(map_(p), around); }
  void AddPoints(const std::vector<Vec2>& points);
  void AddArc(const ConicArc& arc, double around = 0);
  void AddBlock(const TextBlock& block);
  void AddForm(const LineEntity& line);
  void AddForm(const ArcEntity& arc);
  void AddForm(const EllipseEntity& ellipse);
  void AddForm(const PointEntity& point);
  void AddForm(const RayEntity& /*ray*/) {}  // endless
  void AddForm(const SolidEntity& solid);
  void AddForm(const TextEntity& text);
  void AddForm(const MTextEntity& mtext);
  void AddForm(const ToleranceEntity& tolerance);
  void AddForm(const FaceEntity& face);
  void AddForm(const MeshEntity& mesh);
  void AddForm(const ImageEntity& image);
  void AddForm(const WipeoutEntity& wipeout);
  void AddForm(const ViewportEntity& viewport);
  void AddForm(const InsertEntity& /*insert*/) {}
  void AddForm(const PolylineEntity& polyline);
  void AddForm(const SplineEntity& spline);
  void AddForm(const HatchEntity& hatch);

  FontBook& fonts_;
  TextSetter texts_;
  Affine map_;  // of the shape that is being added
  Box box_;
  std::vector<Clip> clips_;
  std::vector<Cubic> cubics_;
};

// What is plotted on one page. Refers to the drawing.
struct DrawingPart {
  const Drawing* drawing = nullptr;
  const Layout* layout = nullptr;  // of the drawing; null: its model
  // Around all shapes that DrawingWalk visits, in units of the model or of the layout. The extents in the
  // file's header are not used.
  Box extents;
};

[[nodiscard]] DrawingPart MeasuredPart(const Drawing& drawing, const PlotOptions& options, FontBook& fonts,
                                       const Layout* layout = nullptr);

}  // namespace hdiplot
