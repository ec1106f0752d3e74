// The shapes of entities of one object whose groups can stand in any order: lines, arcs, images and the like,
// INSERT and LEADER.
#pragma once

#include <string_view>

#include "hdiplot/dxf/dxf_object.h"
#include "hdiplot/dxf/name_decoder.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

using ShapeReader = Shape (*)(const DxfObject& entity);

// Null for other types of entity. The reader throws DxfFault for an entity that has no shape.
[[nodiscard]] ShapeReader FindShapeReader(std::string_view type);

// Throws DxfFault likewise.
[[nodiscard]] InsertEntity ReadInsert(const DxfObject& entity, const NameDecoder& names);

}  // namespace hdiplot
