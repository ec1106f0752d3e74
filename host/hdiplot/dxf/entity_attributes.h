// The attributes that all entities, and in part layers, have in common: layer, colour, line type, line
// weight, transparency, link. dxflib takes an old file's thickness for a line weight and says nothing of
// visibility, so these come straight from the groups.
#pragma once

#include "host/hdiplot/dxf/drawing.h"
#include "host/hdiplot/dxf/dxf_object.h"
#include "host/hdiplot/dxf/name_decoder.h"

namespace hdiplot {

enum class ColorSign { kInvalid, kMeansOff };

// Groups 420 (true colour) and 62 (index, 0 for by block, 256 for by layer).
EntityColor ColorOf(const DxfObject& object, EntityColor fallback, ColorSign sign);

// Group 370: hundredths of a millimetre, or a code.
int LineWeightOf(const DxfObject& object, int fallback);

// A layer's transparency, which is in its extended data; 255 without.
uint8_t LayerAlphaOf(const DxfObject& entry);

Attributes AttributesOf(const DxfObject& entity, const NameDecoder& names);

}  // namespace hdiplot
