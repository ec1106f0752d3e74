#include "hdiplot/plot/extents.h"

#include <limits>

#include "hdiplot/geometry/splines.h"
#include "hdiplot/plot/boundaries.h"
#include "hdiplot/plot/polyline.h"
#include "hdiplot/plot/walk.h"

namespace hdiplot {

namespace {

class ExtentsSink final : public ShapeSink {
 public:
  ExtentsSink(const Drawing& drawing, FontBook& fonts) : meter_(drawing, fonts) {}

  void Put(const Shape& shape, const Affine& map, const Style& /*style*/) override { meter_.Add(shape, map); }
  bool BeginViewport(const ViewportEntity& viewport, const Affine& map) override {
    meter_.Add(viewport, map);
    return false;
  }
  bool BeginClip(const BlockClip& clip, const Affine& map) override {
    constexpr double kFar = std::numeric_limits<double>::max();
    meter_.BeginClip(clip.isInverted ? Box{{-kFar, -kFar}, {kFar, kFar}} : BoxOf(Mapped(clip.outline, map)));
    return true;
  }
  void EndClip() override { meter_.EndClip(); }

  [[nodiscard]] const Box& Extents() const { return meter_.Extents(); }

 private:
  ShapeMeter meter_;
};

}  // namespace

void ShapeMeter::Add(const Shape& shape, const Affine& map) {
  map_ = map;
  std::visit([this](const auto& form) { AddForm(form); }, shape);
}

void ShapeMeter::BeginClip(const Box& clip) {
  clips_.push_back({clip, box_});
  box_ = {};
}

void ShapeMeter::EndClip() {
  const Clip clip = clips_.back();
  clips_.pop_back();
  const Box seen = Common(box_, clip.within);
  box_ = clip.before;
  box_.Add(seen.low);
  box_.Add(seen.high);
}

void ShapeMeter::AddPoints(const std::vector<Vec2>& points) {
  for (const Vec2& p : points) AddPoint(p);
}

void ShapeMeter::AddArc(const ConicArc& arc, double around) {
  Box own;
  AddToBox(Transformed(arc, map_), own);
  if (own.Empty()) return;
  box_.Add(own.low, around);
  box_.Add(own.high, around);
}

void ShapeMeter::AddBlock(const TextBlock& block) {
  const Box own = BoxOf(block, map_, fonts_);
  box_.Add(own.low);
  box_.Add(own.high);
}

void ShapeMeter::AddForm(const LineEntity& line) {
  AddPoint(line.start);
  AddPoint(line.end);
}

void ShapeMeter::AddForm(const ArcEntity& arc) { AddArc(ConicOf(arc)); }

void ShapeMeter::AddForm(const EllipseEntity& ellipse) { AddArc(ellipse); }

void ShapeMeter::AddForm(const PointEntity& point) { AddPoint(point.point); }

void ShapeMeter::AddForm(const SolidEntity& solid) { AddPoints(solid.corners); }

void ShapeMeter::AddForm(const TextEntity& text) { AddBlock(texts_.Set(text)); }

void ShapeMeter::AddForm(const MTextEntity& text) { AddBlock(texts_.Set(text)); }

void ShapeMeter::AddForm(const ToleranceEntity& tolerance) { AddBlock(texts_.Set(tolerance)); }

void ShapeMeter::AddForm(const FaceEntity& face) { AddPoints(face.corners); }

void ShapeMeter::AddForm(const MeshEntity& mesh) {
  for (const auto& edge : mesh.edges) AddPoints(edge);
}

void ShapeMeter::AddForm(const ImageEntity& image) {
  AddPoints(image.clip.empty() || image.clipInverted ? FrameOf(image) : image.clip);
}

void ShapeMeter::AddForm(const WipeoutEntity& wipeout) {
  for (const auto& ring : wipeout.rings) AddPoints(ring);
}

void ShapeMeter::AddForm(const ViewportEntity& viewport) { AddPoints(FrameOf(viewport)); }

void ShapeMeter::AddForm(const PolylineEntity& polyline) {
  const double around = LargestWidth(polyline) / 2 * map_.LargestScale();
  for (const PolyVertex& vertex : polyline.vertices) AddPoint(vertex.point, around);
  for (size_t i = 0; i < SegmentCount(polyline); ++i) {
    if (polyline.vertices[i].bulge == 0) continue;
    if (const auto arc = SegmentOf(polyline, i).arc) AddArc(*arc, around);
  }
}

void ShapeMeter::AddForm(const SplineEntity& spline) {
  const Box frame = BoxOf(spline.controlPoints);
  cubics_.clear();
  const double size = std::max(frame.Width(), frame.Height());
  AppendCubics(spline, std::max(1e-4 * size, kRoundingNoise * frame.Magnitude()), cubics_);
  for (Cubic& cubic : cubics_) {
    for (Vec2& p : cubic.points) p = map_(p);
    AddToBox(cubic, box_);
  }
}

void ShapeMeter::AddForm(const HatchEntity& hatch) {
  for (const HatchLoop& loop : hatch.loops) {
    AddForm(PolylineEntity{loop.polyline.vertices, true});
    for (const HatchEdge& edge : loop.edges) {
      std::visit([this](const auto& form) { AddForm(form); }, edge);
    }
  }
}

DrawingPart MeasuredPart(const Drawing& drawing, const PlotOptions& options, FontBook& fonts,
                         const Layout* layout) {
  ExtentsSink sink(drawing, fonts);
  DrawingWalk(drawing, options, sink).Run(Affine{}, layout);
  return {&drawing, layout, sink.Extents()};
}

}  // namespace hdiplot
