#include "hdiplot/plot/extents.h"

#include "hdiplot/plot/shape_meter.h"
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

  [[nodiscard]] const Box& Extents() const { return meter_.Extents(); }

 private:
  ShapeMeter meter_;
};

}  // namespace

DrawingPart MeasuredPart(const Drawing& drawing, const PlotOptions& options, FontBook& fonts,
                         const Layout* layout) {
  ExtentsSink sink(drawing, fonts);
  DrawingWalk(drawing, options, sink).Run(Affine{}, layout);
  return {&drawing, layout, sink.Extents()};
}

}  // namespace hdiplot
