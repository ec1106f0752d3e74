// The part of the builder for entities whose graphics are in an anonymous block: dimensions and tables.
#include <string>
#include <utility>

#include "hdiplot/dxf/drawing_builder.h"
#include "hdiplot/dxf/object_plane.h"

namespace hdiplot {
namespace {

// Blocks of dimensions that have none. No block of a file can have such a name.
constexpr const char* kDrawnDimension = "\nD";

}  // namespace

// The block is in the drawing's coordinates. Group 12 moves it, in a dimension that was copied from another.
void DrawingBuilder::AddDimension(const DxfObject& entity, const Attributes& attributes) {
  const Group* name = entity.Find(2);
  InsertEntity insert;
  insert.block = name != nullptr ? names_.Folded(*name) : names_.Hold(kDrawnDimension);
  insert.at = entity.Point(12);
  std::optional<Dimension> dimension;
  if (entity.type == "DIMENSION" && !drawing_.blocks.contains(insert.block)) {
    dimension = ReadDimension(entity, dimensionStyles_, dimensionVariables_, decoder_);
  }
  Entity& added = AddInsertOf(entity, attributes, std::move(insert));
  if (dimension) dimensions_.push_back({&added, *std::move(dimension)});
}

// The block's X axis has the direction of group 11, in world coordinates.
void DrawingBuilder::AddTable(const DxfObject& entity, const Attributes& attributes) {
  const Ocs plane = PlaneOf(entity);
  const Vec3 along = entity.SpacePoint(11);
  const double length = Length(along);
  const Vec3 right = length > 0 ? along / length : Vec3{1, 0, 0};
  InsertEntity insert;
  insert.block = names_.Folded(entity.Needed(2));
  (void)entity.NeededPoint(10);
  insert.at = plane.Project(entity.SpacePoint(10));
  insert.right = Flat(right);
  insert.up = Flat(plane.MinorDirection(right));
  AddInsertOf(entity, attributes, std::move(insert));
}

// Draws the dimensions whose blocks are not in the file.
void DrawingBuilder::FinishDimensions() {
  size_t count = 0;
  for (const auto& [entity, dimension] : dimensions_) {
    InsertEntity& insert = std::get<InsertEntity>(entity->shape);
    if (drawing_.blocks.contains(insert.block)) continue;
    Entities entities = DimensionEntities(dimension, PartsOf(dimension.style));
    if (entities.empty()) continue;
    insert.block = names_.Hold(kDrawnDimension + std::to_string(++count));
    insert.at = {};
    drawing_.blocks[insert.block].entities = std::move(entities);
  }
}

DimensionParts DrawingBuilder::PartsOf(const DimensionStyle& style) {
  DimensionParts parts;
  const auto textStyle = textStylesByHandle_.find(style.textStyle);
  if (textStyle != textStylesByHandle_.end()) parts.textStyle = names_.Hold(textStyle->second);
  const auto found = drawing_.textStyles.find(parts.textStyle);
  if (found != drawing_.textStyles.end()) parts.fixedTextHeight = found->second.height;
  parts.arrow1 = ArrowOf(style.hasTwoArrows != 0 ? style.arrow1 : style.arrow);
  parts.arrow2 = ArrowOf(style.hasTwoArrows != 0 ? style.arrow2 : style.arrow);
  return parts;
}

Name DrawingBuilder::ArrowOf(const std::string& handle) {
  const auto block = blocksByHandle_.find(handle);
  const bool isThere = block != blocksByHandle_.end() && drawing_.blocks.contains(block->second);
  return isThere ? names_.Hold(block->second) : Name(&kNoName);
}

}  // namespace hdiplot
