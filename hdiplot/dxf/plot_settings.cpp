// The part of the builder for what plots refer to: plot styles, where handles lead from entities and layers
// to names, which are in a dictionary behind all of them; and views by name.
#include <limits>

#include "hdiplot/dxf/drawing_builder.h"

namespace hdiplot {

uint16_t DrawingBuilder::PlotStyleOf(const DxfObject& entity) {
  constexpr int64_t kByBlockType = 1;
  constexpr size_t kMost = std::numeric_limits<uint16_t>::max();
  const Group* handle = entity.Find(390);
  if (handle == nullptr) {
    return entity.Integer(380, 0) == kByBlockType ? kPlotStyleByBlock : kPlotStyleByLayer;
  }
  const size_t next = drawing_.plotStyles.size();
  if (next > kMost) return kPlotStyleByLayer;
  const std::string key = HandleKey(handle->Value());
  const auto [style, isNew] = plotStyles_.try_emplace(key, static_cast<uint16_t>(next));
  if (isNew) drawing_.plotStyles.push_back(key);  // a name in the end
  return style->second;
}

// Each name (3) is followed by the handle of a placeholder (350).
void DrawingBuilder::AddPlotStyleNames(const DxfObject& dictionary) {
  const Group* name = nullptr;
  for (const Group& group : dictionary.groups) {
    if (group.code == 3) name = &group;
    if (group.code != 350 || name == nullptr) continue;
    plotStylesByHandle_[HandleKey(group.Value())] = decoder_.DecodeFoldedName(*name);
    name = nullptr;
  }
}

void DrawingBuilder::FinishPlotStyles() {
  const auto resolve = [this](std::string& style) {
    const auto name = plotStylesByHandle_.find(style);
    style = name != plotStylesByHandle_.end() ? name->second : std::string();
  };
  for (std::string& style : drawing_.plotStyles) resolve(style);
  for (auto& [name, layer] : drawing_.layers) resolve(layer.plotStyle);
}

// Groups 40 and 41 are the height and width, 50 the twist.
void DrawingBuilder::AddView(const DxfObject& entry) {
  const Vec2 half{entry.Real(41, 0) / 2, entry.Real(40, 0) / 2};
  const Vec3 direction{entry.Real(11, 0), entry.Real(21, 0), entry.Real(31, 1)};
  const bool isPlan = direction.x == 0 && direction.y == 0 && direction.z > 0 && entry.Real(50, 0) == 0;
  if (!isPlan || !(half.x > 0 && half.y > 0)) return;
  const Vec2 center = entry.Point(10);
  views_[decoder_.DecodeFoldedName(entry.Needed(2))] = {center - half, center + half};
}

}  // namespace hdiplot
