// The calls whose arguments take more than passing on.
#include "hdiplot/trace/trace_player.h"

#include <utility>
#include <variant>

namespace hdiplot {

int64_t TracePlayer::Play(Call& call) {
  return std::visit([this](auto& made) { return Make(made); }, call);
}

int64_t TracePlayer::Make(const call::SetClip& call) {
  return device_.SetClip(call.polygons ? std::span(*call.polygons) : std::span<const PointList>(),
                         call.apply);
}

int64_t TracePlayer::Make(const call::Text& call) {
  return device_.Text(call.font, call.position, call.text, call.advances ? &*call.advances : nullptr,
                      call.textHeight, call.obliqueAngle, call.trackingFactor, call.widthFactor);
}

int64_t TracePlayer::Make(call::Bitmap& call) {
  PlacedRaster& placed = rasters_.emplace_back(std::move(call.image));
  placed.record = {&placed.raster, call.originX, call.originY, call.scaleX, {}, call.scaleY};
  return device_.Bitmap(placed.record);
}

}  // namespace hdiplot
