#include "host/hdiplot/plot/extents.h"

#include "host/hdiplot/plot/image_plotter.h"
#include "host/hdiplot/plot/polyline.h"
#include "host/hdiplot/plot/splines.h"
#include "host/hdiplot/plot/walk.h"
#include "host/hdiplot/text/text_setter.h"

namespace hdiplot {

namespace {

class ExtentsSink final : public ShapeSink {
 public:
  ExtentsSink(const Drawing& drawing, FontBook& fonts) : fonts_(fonts), texts_(drawing, fonts) {}

  void Put(const Shape& shape, const Affine& map, const Style& /*style*/) override {
    map_ = map;
    std::visit([this](const auto& form) { Add(form); }, shape);
  }

  bool BeginViewport(const ViewportEntity& viewport, const Affine& map) override {
    map_ = map;
    AddPoints(FrameOf(viewport));
    return false;
  }

  [[nodiscard]] const Box& Extents() const { return box_; }

 private:
  void AddPoint(Vec2 p, double around = 0) { box_.Add(map_(p), around); }
  void AddPoints(const std::vector<Vec2>& points) {
    for (const Vec2& p : points) AddPoint(p);
  }
  void AddArc(const ConicArc& arc, double around = 0) {
    Box own;
    AddToBox(Transformed(arc, map_), own);
    if (own.Empty()) return;
    box_.Add(own.low, around);
    box_.Add(own.high, around);
  }

  void AddBlock(const TextBlock& block) {
    const Box own = BoxOf(block, map_, fonts_);
    box_.Add(own.low);
    box_.Add(own.high);
  }

  void Add(const LineEntity& line) {
    AddPoint(line.start);
    AddPoint(line.end);
  }
  void Add(const ArcEntity& arc) { AddArc(ConicOf(arc)); }
  void Add(const EllipseEntity& ellipse) { AddArc(ConicOf(ellipse)); }
  void Add(const PointEntity& point) { AddPoint(point.point); }
  void Add(const SolidEntity& solid) { AddPoints(solid.corners); }
  void Add(const TextEntity& text) { AddBlock(texts_.Set(text)); }
  void Add(const MTextEntity& text) { AddBlock(texts_.Set(text)); }
  void Add(const FaceEntity& face) { AddPoints(face.corners); }
  void Add(const MeshEntity& mesh) {
    for (const auto& edge : mesh.edges) AddPoints(edge);
  }
  void Add(const ImageEntity& image) {
    AddPoints(image.clip.empty() || image.clipInverted ? FrameOf(image) : image.clip);
  }
  void Add(const WipeoutEntity& wipeout) {
    for (const auto& ring : wipeout.rings) AddPoints(ring);
  }
  void Add(const ViewportEntity& viewport) { AddPoints(FrameOf(viewport)); }
  void Add(const InsertEntity& /*insert*/) {}

  void Add(const PolylineEntity& polyline) {
    const double around = LargestWidth(polyline) / 2 * map_.LargestScale();
    for (const PolyVertex& vertex : polyline.vertices) AddPoint(vertex.point, around);
    for (size_t i = 0; i < SegmentCount(polyline); ++i) {
      if (polyline.vertices[i].bulge == 0) continue;
      if (const auto arc = SegmentOf(polyline, i).arc) AddArc(*arc, around);
    }
  }

  void Add(const SplineEntity& spline) {
    Box frame;
    for (const Vec2& p : spline.controlPoints) frame.Add(p);
    cubics_.clear();
    const double size = std::max(frame.Width(), frame.Height());
    AppendCubics(spline, std::max(1e-4 * size, kRoundingNoise * frame.Magnitude()), cubics_);
    for (Cubic& cubic : cubics_) {
      for (Vec2& p : cubic.points) p = map_(p);
      AddToBox(cubic, box_);
    }
  }

  void Add(const HatchEntity& hatch) {
    for (const HatchLoop& loop : hatch.loops) {
      Add(PolylineEntity{loop.polyline.vertices, true});
      for (const HatchEdge& edge : loop.edges) {
        std::visit([this](const auto& form) { Add(form); }, edge);
      }
    }
  }

  FontBook& fonts_;
  TextSetter texts_;
  Affine map_;
  Box box_;
  std::vector<Cubic> cubics_;
};

}  // namespace

Box PlottedExtents(const Drawing& drawing, const PlotOptions& options, FontBook& fonts,
                   const Layout* layout) {
  ExtentsSink sink(drawing, fonts);
  DrawingWalk(drawing, options, sink).Run(Affine{}, layout);
  return sink.Extents();
}

}  // namespace hdiplot
