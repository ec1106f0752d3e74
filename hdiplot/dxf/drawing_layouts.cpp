// The part of the builder for layouts. Their entities are in blocks or, for the active one, in the section
// ENTITIES. Handles lead from a layout to its block, and from a viewport to layers and its outline.
#include <algorithm>

#include "hdiplot/dxf/drawing_builder.h"
#include "hdiplot/dxf/layout_reader.h"

namespace hdiplot {
namespace {

constexpr const char* kModelBlock = "*model_space";
constexpr const char* kOnlyLayout = "Layout1";  // of files with a paper space but no LAYOUT

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
  std::optional<LayoutRecord> record = ReadLayout(object, decoder_);
  if (!record) return;
  const auto block = blocksByHandle_.find(record->blockHandle);
  if (block == blocksByHandle_.end() || block->second == kModelBlock) return;
  record->layout.block = block->second;
  const bool isKnown =
      std::ranges::find(drawing_.layouts, block->second, &Layout::block) != drawing_.layouts.end();
  if (!isKnown) drawing_.layouts.push_back(std::move(record->layout));
}

// Whether the current entity is part of a layout.
bool DrawingBuilder::IsOnSheet(const Attributes& attributes) const {
  return block_.empty() ? attributes.paperSpace : block_.Text().starts_with(kActivePaper);
}

void DrawingBuilder::AddViewport(const DxfObject& entity, const Attributes& attributes) {
  if (!IsOnSheet(attributes)) return;
  const auto [sheet, isFirst] = shownViewports_.try_emplace(ContainerOf(attributes), 0);
  ViewportRecord record = ReadViewport(entity, isFirst, decoder_);
  if (record.use == ViewportUse::kNotPlanar) CountSkipped("VIEWPORT not seen from above", attributes);
  if (record.use == ViewportUse::kNone) return;
  record.viewport.showsModel = record.use == ViewportUse::kShown;
  if (record.viewport.showsModel) ++sheet->second;
  for (const std::string& handle : record.frozenHandles) {
    const auto layer = layersByHandle_.find(handle);
    if (layer != layersByHandle_.end()) record.viewport.frozenLayers.push_back(layer->second);
  }
  Entity& added = AddEntity(attributes, std::move(record.viewport), entity.Text(5));
  if (!record.clipHandle.empty()) clippedViewports_.push_back({&added, std::move(record.clipHandle)});
}

void DrawingBuilder::FinishViewports() {
  for (const auto& [viewport, clipHandle] : clippedViewports_) {
    const auto outline = outlines_.find(clipHandle);
    if (outline == outlines_.end()) continue;
    std::get<ViewportEntity>(viewport->shape).clip = {LoopOf(outline->second->shape)};
  }
}

void DrawingBuilder::FinishLayouts() {
  if (drawing_.layouts.empty() && hasPaper_) {
    drawing_.layouts.emplace_back();
    drawing_.layouts.back().name = kOnlyLayout;
    drawing_.layouts.back().block = kActivePaper;
  }
  std::ranges::stable_sort(drawing_.layouts, {}, &Layout::order);
  for (Layout& layout : drawing_.layouts) {
    for (const std::string& container : {layout.block, kPaperName}) {
      if (container == kPaperName && layout.block != kActivePaper) continue;
      layout.viewports += shownViewports_[container];
      for (const auto& [type, count] : SkippedIn(container)) layout.skipped[type] += count;
    }
  }
}

TypeCounts DrawingBuilder::SkippedIn(const std::string& container) const {
  TypeCounts counts = graph_.SkippedIn(container);
  std::erase_if(counts, [](const auto& entry) { return entry.second == 0; });
  return counts;
}

}  // namespace hdiplot
