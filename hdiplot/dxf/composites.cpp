// The part of the builder for entities that are made of others: they become inserts of blocks of their own.
#include <utility>

#include "hdiplot/dxf/drawing_builder.h"
#include "hdiplot/dxf/proxy_bytes.h"
#include "hdiplot/dxf/proxy_graphics.h"
#include "hdiplot/dxf/shape_reader.h"
#include "hdiplot/dxf/table_reader.h"

namespace hdiplot {

Entities& DrawingBuilder::AddComposite(const Attributes& attributes, std::string_view handle) {
  InsertEntity insert;
  insert.block = names_.Hold("\nparts " + std::to_string(++composites_));  // no name of a file
  Entities& parts = drawing_.blocks[insert.block].entities;
  AddEntity(attributes, std::move(insert), handle);
  return parts;
}

bool DrawingBuilder::AddProxyGraphics(const DxfObject& entity, const Attributes& attributes) {
  const std::optional<std::string> bytes = ProxyBytesOf(entity);
  if (!bytes) return false;
  const ProxyTables tables{names_, layersInOrder_, lineTypesInOrder_, drawing_.textStyles};
  Entities parts = ReadProxyGraphics(*bytes, attributes, tables);
  if (parts.empty()) return false;
  AddComposite(attributes, entity.Text(5)) = std::move(parts);
  return true;
}

void DrawingBuilder::AddMLine(const DxfObject& entity, const Attributes& attributes) {
  MLine line = ReadMLine(entity);
  mlines_.push_back({std::move(line), attributes, &AddComposite(attributes, entity.Text(5))});
}

void DrawingBuilder::FinishMLines() {
  for (const PendingMLine& mline : mlines_) {
    const auto style = mlineStyles_.find(mline.line.styleHandle);
    AppendMLine(mline.line, style != mlineStyles_.end() ? &style->second : nullptr, mline.attributes,
                *mline.parts);
  }
}

// The fill has a colour of its own (63); the boundaries have the entity's.
void DrawingBuilder::AddMPolygon(const DxfObject& entity, const Attributes& attributes) {
  HatchEntity fill = ReadMPolygon(entity);
  Entities& parts = AddComposite(attributes, entity.Text(5));
  Attributes own;
  own.layer = attributes.layer;
  own.lineTypeScale = attributes.lineTypeScale;
  own.lineWeight = kLineWeightByBlock;
  own.alpha = {EntityAlpha::Kind::kByBlock};
  own.color = IndexedColor(entity.Integer(63, 256));
  const std::vector<HatchLoop> loops = fill.loops;
  if (fill.solid || !fill.lines.empty()) parts.emplace_back(own, std::move(fill));
  own.color = {EntityColor::Kind::kByBlock};
  own.lineType = Name(&kByBlock);
  for (const HatchLoop& loop : loops) {
    if (!loop.polyline.vertices.empty()) parts.emplace_back(own, loop.polyline);
    for (const HatchEdge& edge : loop.edges) {
      std::visit([&](const auto& form) { parts.emplace_back(own, form); }, edge);
    }
  }
}

}  // namespace hdiplot
