#include "hdiplot/plot/walk.h"

#include <algorithm>

namespace hdiplot {

Affine ModelToSheet(const ViewportEntity& viewport) {
  return Affine::Translation(viewport.center) * Affine::Scaling(viewport.scale, viewport.scale) *
         Affine::Translation(viewport.viewCenter * -1) * Affine::Rotation(viewport.twist) *
         Affine::Translation(viewport.target * -1);
}

DrawingWalk::DrawingWalk(const Drawing& drawing, const PlotOptions& options, ShapeSink& sink)
    : drawing_(drawing), sink_(sink), options_(options), sheetStyles_(drawing, options) {}

void DrawingWalk::Run(const Affine& map, const Layout* layout) {
  size_t done = 0;
  if (layout == nullptr) {
    for (const Entity& entity : drawing_.entities) {
      if (!entity.attributes.paperSpace) Visit(entity, map, nullptr);
      sink_.Done(++done);
    }
    return;
  }
  ForEachEntity(drawing_, *layout, [&](const Entity& entity) {
    VisitOnSheet(entity, map);
    sink_.Done(++done);
  });
}

// A viewport shows the model even if its layer, which is that of its border, is not plotted.
void DrawingWalk::VisitOnSheet(const Entity& entity, const Affine& map) {
  const auto* viewport = std::get_if<ViewportEntity>(&entity.shape);
  const bool isSeen = viewport != nullptr && viewport->showsModel && entity.attributes.visible;
  if (isSeen && sink_.BeginViewport(*viewport, map)) {
    StyleResolver styles(drawing_, options_, viewport->frozenLayers);
    styles_ = &styles;
    VisitModel(map * ModelToSheet(*viewport));
    styles_ = &sheetStyles_;
    sink_.EndViewport();
  }
  Visit(entity, map, nullptr);
}

void DrawingWalk::VisitModel(const Affine& map) {
  for (const Entity& entity : drawing_.entities) {
    if (!entity.attributes.paperSpace) Visit(entity, map, nullptr);
  }
}

void DrawingWalk::Visit(const Entity& entity, const Affine& map, const Style* insert) {
  if (!entity.attributes.visible) return;
  const Style style = styles_->Resolve(entity.attributes, insert);
  // An insert on a layer that is off still shows the block's entities on other layers; a frozen layer hides
  // them.
  const bool isInsert = std::holds_alternative<InsertEntity>(entity.shape);
  if (isInsert ? style.layer->frozen : !style.layer->plotted) return;
  if (isLinked_ || entity.attributes.link.empty()) {
    VisitShown(entity, map, style);
    return;
  }
  isLinked_ = true;
  sink_.BeginLink(entity.attributes.link, entity.shape);
  VisitShown(entity, map, style);
  sink_.EndLink();
  isLinked_ = false;
}

void DrawingWalk::VisitShown(const Entity& entity, const Affine& map, const Style& style) {
  if (const auto* insert = std::get_if<InsertEntity>(&entity.shape)) {
    VisitInsert(*insert, map, style);
  } else {
    sink_.Put(entity.shape, map, style);
  }
}

void DrawingWalk::VisitInsert(const InsertEntity& insert, const Affine& map, const Style& style) {
  const auto found = drawing_.blocks.find(insert.block);
  if (found == drawing_.blocks.end() || IsOpen(found->second)) return;
  if (open_.size() == kDeepestInsert) {
    ++unwalked_.tooDeep;
    return;
  }
  open_.push_back(&found->second);
  VisitCopies(insert, found->second, map, style);
  open_.pop_back();
  if (open_.empty() && isCutOff_) {
    ++unwalked_.cutOff;
    isCutOff_ = false;
  }
}

void DrawingWalk::VisitCopies(const InsertEntity& insert, const Block& block, const Affine& map,
                              const Style& style) {
  const Affine plane = Affine::OfAxes(insert.right, insert.up, insert.at);
  // The array's columns and rows turn with the insert and are not scaled.
  const Affine place = map * plane * Affine::Rotation(insert.rotation);
  const Affine form =
      Affine::Scaling(insert.scaleX, insert.scaleY) * Affine::Translation({-block.base.x, -block.base.y});
  for (int row = 0; row < std::max(insert.rows, 1); ++row) {
    for (int column = 0; column < std::max(insert.columns, 1); ++column) {
      if (!TakeFromBlocks()) return;  // empty blocks count, as they take time
      const Vec2 offset{column * insert.columnSpacing, row * insert.rowSpacing};
      const Affine copy = place * Affine::Translation(offset) * form;
      if (insert.clip && !sink_.BeginClip(*insert.clip, copy)) continue;
      VisitBlock(block, copy, style);
      if (insert.clip) sink_.EndClip();
    }
  }
}

// Whether one more entity is within the limit.
bool DrawingWalk::TakeFromBlocks() {
  isCutOff_ = isCutOff_ || leftFromBlocks_ == 0;
  if (leftFromBlocks_ == 0) return false;
  --leftFromBlocks_;
  return true;
}

void DrawingWalk::VisitBlock(const Block& block, const Affine& map, const Style& style) {
  for (const Entity& entity : block.entities) {
    if (!TakeFromBlocks()) return;
    Visit(entity, map, &style);
  }
}

bool DrawingWalk::IsOpen(const Block& block) const {
  return std::find(open_.begin(), open_.end(), &block) != open_.end();
}

}  // namespace hdiplot
