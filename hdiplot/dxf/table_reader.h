// Variables of the header, layers, line types, and the attributes of entities, which refer to them. Text
// styles are in text_reader.h.
#pragma once

#include "hdiplot/dxf/dxf_object.h"
#include "hdiplot/dxf/text_decoder.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

// Takes a variable into the drawing or the decoder, if it is one of theirs.
void ReadVariable(const DxfObject& variable, Drawing& drawing, TextDecoder& decoder);

// An entry of the table LAYER, without its name. Throws DxfFault for a name that is too long, like the next.
[[nodiscard]] Layer ReadLayer(const DxfObject& entry, const TextDecoder& decoder);

[[nodiscard]] Attributes ReadAttributes(const DxfObject& entity, NameCache& names);

// The signs have the handles of their styles for names.
[[nodiscard]] LineType ReadLineType(const DxfObject& entry, const TextDecoder& decoder);

// An index of group 62 or 63: 0 is by block, 256 and whatever is invalid by layer.
[[nodiscard]] EntityColor IndexedColor(int64_t index);

// Hundredths of a millimetre, or one of the codes in drawing.h; `fallback` for any other number.
[[nodiscard]] int16_t LineWeight(int64_t weight, int16_t fallback);

// Groups 420 and 421.
[[nodiscard]] EntityColor TrueColor(const Group& group);

}  // namespace hdiplot
