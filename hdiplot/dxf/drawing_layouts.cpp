// The part of the builder that is about layouts: their entities stand in blocks or, of the active one, among
// those of the model; handles lead from a layout to its block and from a viewport to layers and its outline.
#include <algorithm>

#include "hdiplot/dxf/drawing_builder.h"
#include "hdiplot/dxf/layout_reader.h"

namespace hdiplot {
namespace {

constexpr const char* kModelBlock = "*MODEL_SPACE";
constexpr const char* kOnlyLayout = "Layout1";  // of files that have a paper space but no objects

HatchLoop LoopOf(const Shape& shape) {
  HatchLoop loop;
  if (const auto* polyline = std::get_if<PolylineEntity>(&shape)) loop.polyline = *polyline;
  if (const auto* arc = std::get_if<ArcEntity>(&shape)) loop.edges.emplace_back(*arc);
  if (const auto* ellipse = std::get_if<EllipseEntity>(&shape)) loop.edges.emplace_back(*ellipse);
  if (const auto* spline = std::get_if<SplineEntity>(&shape)) loop.edges.emplace_back(*spline);
  return loop;
}

}  // namespace

void DrawingBuilder::AddLayout(const DxfObject& object) {
  std::optional<ReadLayout> read = LayoutOf(object, decoder_);
  if (!read) return;
  const auto block = blocksByHandle_.find(read->blockHandle);
  if (block == blocksByHandle_.end() || block->second == kModelBlock) return;
  read->layout.block = block->second;
  const bool isKnown =
      std::ranges::find(drawing_.layouts, block->second, &Layout::block) != drawing_.layouts.end();
  if (!isKnown) drawing_.layouts.push_back(std::move(read->layout));
}

// Of the entity being read: whether it is one of a layout.
bool DrawingBuilder::IsOnSheet(const Attributes& attributes) const {
  return block_.empty() ? attributes.paperSpace : block_.starts_with(kActivePaper);
}

void DrawingBuilder::AddViewport(const DxfObject& entity, const Attributes& attributes) {
  if (!IsOnSheet(attributes)) return;
  ReadViewport read = ViewportOf(entity, sheetsSeen_.insert(Place(attributes)).second, decoder_);
  if (read.use == ViewportUse::kNotPlanar) CountSkipped("VIEWPORT not seen from above", attributes);
  if (read.use == ViewportUse::kNone) return;
  read.viewport.showsModel = read.use == ViewportUse::kShown;
  for (const std::string& handle : read.frozenHandles) {
    const auto layer = layersByHandle_.find(handle);
    if (layer != layersByHandle_.end()) read.viewport.frozenLayers.push_back(layer->second);
  }
  if (!read.clipHandle.empty()) {
    viewports_.push_back({{entities_, entities_->size()}, std::move(read.clipHandle)});
  }
  AddEntity(attributes, std::move(read.viewport));
}

void DrawingBuilder::FinishViewports() {
  for (const OpenViewport& open : viewports_) {
    const auto outline = outlines_.find(open.clipHandle);
    if (outline == outlines_.end()) continue;
    Entity& entity = open.place.entities->at(open.place.index);
    std::get<ViewportEntity>(entity.shape).clip = {
        LoopOf(outline->second.entities->at(outline->second.index).shape)};
  }
}

void DrawingBuilder::FinishLayouts() {
  const bool hasPaper =
      std::ranges::any_of(drawing_.entities, [](const Entity& e) { return e.attributes.paperSpace; });
  if (drawing_.layouts.empty() && hasPaper) {
    drawing_.layouts.emplace_back();
    drawing_.layouts.back().name = kOnlyLayout;
    drawing_.layouts.back().block = kActivePaper;
  }
  std::ranges::stable_sort(drawing_.layouts, {}, &Layout::order);
  for (Layout& layout : drawing_.layouts) {
    layout.skipped = SkippedIn(layout.block);
    if (layout.block == kActivePaper) {
      for (const auto& [type, count] : SkippedIn(kPaperName)) layout.skipped[type] += count;
    }
    ForEachEntity(drawing_, layout, [&layout](const Entity& entity) {
      const auto* viewport = std::get_if<ViewportEntity>(&entity.shape);
      if (viewport != nullptr && viewport->showsModel) ++layout.viewports;
    });
  }
}

TypeCounts DrawingBuilder::SkippedIn(const std::string& place) const {
  TypeCounts counts = graph_.SkippedIn(place);
  std::erase_if(counts, [](const auto& entry) { return entry.second == 0; });
  return counts;
}

}  // namespace hdiplot
