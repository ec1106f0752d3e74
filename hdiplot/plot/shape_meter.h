// How large are single shapes?
#pragma once

#include <vector>

#include "hdiplot/geometry/curves.h"
#include "hdiplot/geometry/transform.h"
#include "hdiplot/model/drawing.h"
#include "hdiplot/text/font_book.h"
#include "hdiplot/text/text_setter.h"

namespace hdiplot {

// Exact for lines, arcs and splines, texts as high as their fonts, with the widths of polylines and without
// line weights and point symbols.
class ShapeMeter {
 public:
  // Refers to both from then on. The shapes are those of `drawing`, whose text styles count.
  ShapeMeter(const Drawing& drawing, FontBook& fonts) : fonts_(fonts), texts_(drawing, fonts) {}

  // `map` leads from the shape's coordinates to those of the box. An InsertEntity adds nothing.
  void Add(const Shape& shape, const Affine& map);

  // Around all that has been added.
  [[nodiscard]] const Box& Extents() const { return box_; }

  // From here on nothing has been.
  void Clear() { box_ = {}; }

 private:
  void AddPoint(Vec2 p, double around = 0) { box_.Add(map_(p), around); }
  void AddPoints(const std::vector<Vec2>& points);
  void AddArc(const ConicArc& arc, double around = 0);
  void AddBlock(const TextBlock& block);
  void AddForm(const LineEntity& line);
  void AddForm(const ArcEntity& arc);
  void AddForm(const EllipseEntity& ellipse);
  void AddForm(const PointEntity& point);
  void AddForm(const SolidEntity& solid);
  void AddForm(const TextEntity& text);
  void AddForm(const MTextEntity& mtext);
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
  Affine map_;  // of the shape being added
  Box box_;
  std::vector<Cubic> cubics_;
};

}  // namespace hdiplot
