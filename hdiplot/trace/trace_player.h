// Playing the calls of a trace on a device.
#pragma once

#include <cstdint>
#include <deque>

#include "hdiplot/device/plot_device.h"
#include "hdiplot/trace/trace.h"

namespace hdiplot {

// Keeps the rasters of the calls that it has played, which the driver reads at the document's end: it must
// live until EndDoc has returned.
class TracePlayer {
 public:
  explicit TracePlayer(PlotDevice& device) : device_(device) {}
  TracePlayer(const TracePlayer&) = delete;
  TracePlayer& operator=(const TracePlayer&) = delete;

  // Makes the call and returns its result. An image's pixels are moved out of the call.
  int64_t Play(Call& call);

 private:
  struct PlacedRaster {
    explicit PlacedRaster(ImageData image) : raster(std::move(image)) {}
    Raster raster;
    hdi::HostImageRecord record{};
  };

  int64_t Make(const call::GetCaps& call) { return device_.GetCaps(call.index); }
  int64_t Make(const call::StartPage& call) { return device_.StartPage(call.devMode); }
  int64_t Make(const call::EndPage&) { return device_.EndPage(); }
  int64_t Make(const call::SetPen& call) { return device_.SetPen(call.pen); }
  int64_t Make(const call::SetBrush& call) { return device_.SetBrush(call.brush); }
  int64_t Make(const call::SetAlpha& call) { return device_.SetAlpha(call.alpha); }
  int64_t Make(const call::SetRasterOp& call) { return device_.SetRasterOp(call.code); }
  int64_t Make(const call::SetFillMode& call) { return device_.SetFillMode(call.mode); }
  int64_t Make(const call::SetLineScale& call) { return device_.SetLineScale(call.scale); }
  int64_t Make(const call::Polyline& call) { return device_.Polyline(call.points); }
  int64_t Make(const call::Polygon& call) { return device_.Polygon(call.points); }
  int64_t Make(const call::PolyPolygon& call) { return device_.PolyPolygon(call.polygons); }
  int64_t Make(const call::PolyBezier& call) { return device_.PolyBezier(call.points); }
  int64_t Make(const call::Arc& call) {
    return device_.Arc(call.center, call.a, call.b, call.c, call.d, call.e);
  }
  int64_t Make(const call::BeginPath&) { return device_.BeginPath(); }
  int64_t Make(const call::EndPath&) { return device_.EndPath(); }
  int64_t Make(const call::FillPath&) { return device_.FillPath(); }
  int64_t Make(const call::StrokeFillPath&) { return device_.StrokeFillPath(); }
  int64_t Make(const call::SetClip& call);
  int64_t Make(const call::BeginLink& call) { return device_.BeginLink(call.target); }
  int64_t Make(const call::EndLink&) { return device_.EndLink(); }
  int64_t Make(const call::SetLayer& call) { return device_.SetLayer(call.name); }
  int64_t Make(const call::Text& call);
  int64_t Make(call::Bitmap& call);
  int64_t Make(const call::ShxComment& call) { return device_.ShxComment(call.text, call.rect, call.flags); }

  PlotDevice& device_;
  std::deque<PlacedRaster> rasters_;  // addresses stay
};

}  // namespace hdiplot
