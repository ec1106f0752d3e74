// Variables of the header and line types. Layers are in attribute_reader.h, text styles in text_reader.h.
#pragma once

#include "hdiplot/dxf/dxf_object.h"
#include "hdiplot/dxf/text_decoder.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

// Takes a variable into the drawing or the decoder, if it is one of theirs.
void ReadVariable(const DxfObject& variable, Drawing& drawing, TextDecoder& decoder);

[[nodiscard]] LineType ReadLineType(const DxfObject& entry);

}  // namespace hdiplot
