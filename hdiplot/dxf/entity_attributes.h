// The attributes that all entities, and in part layers, have in common: layer, colour, line type, line
// weight, transparency, link.
#pragma once

#include "hdiplot/dxf/dxf_object.h"
#include "hdiplot/dxf/name_cache.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

// Groups 420 (true colour) and 62 (index, negative where the layer is off).
EntityColor LayerColorOf(const DxfObject& entry, EntityColor fallback);

// A value of group 370: hundredths of a millimetre, or a code. The fallback where it is neither.
int PlottedLineWeight(int64_t weight, int fallback);

// A layer's transparency, which is in its extended data; 255 without.
uint8_t LayerAlphaOf(const DxfObject& entry);

Attributes AttributesOf(const DxfObject& entity, NameCache& names);

}  // namespace hdiplot
