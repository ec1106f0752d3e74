// Layers, and the attributes of entities: layer, colour, line type, line weight, transparency, link.
#pragma once

#include "hdiplot/dxf/dxf_object.h"
#include "hdiplot/dxf/name_cache.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

// An index of group 62 or 63: 0 is by block, 256 and whatever is invalid by layer.
[[nodiscard]] EntityColor IndexedColor(int64_t index);

// Groups 420 and 421.
[[nodiscard]] EntityColor TrueColor(const Group& group);

// The attributes of an entity. Throws DxfFault for a name that is too long, like the next.
[[nodiscard]] Attributes ReadAttributes(const DxfObject& entity, NameCache& names);

// An entry of the table LAYER, without its name.
[[nodiscard]] Layer ReadLayer(const DxfObject& entry, const TextDecoder& decoder);

}  // namespace hdiplot
