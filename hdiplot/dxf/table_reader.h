// What the plot needs of a DXF's header and tables: layers and line types, with the heads of blocks. Text
// styles are in text_reader.h.
#pragma once

#include <string>

#include "hdiplot/dxf/dxf_object.h"
#include "hdiplot/dxf/name_decoder.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

// Takes a variable into the drawing, or into the decoder; others than those of use are passed over.
void ReadVariable(const DxfObject& variable, Drawing& drawing, NameDecoder& names);

// The layer without its name.
[[nodiscard]] Layer ReadLayer(const DxfObject& entry, const NameDecoder& names);

[[nodiscard]] LineType ReadLineType(const DxfObject& entry);

// Group 2. Throws DxfFault for an object that has none.
[[nodiscard]] std::string NameOf(const DxfObject& object, const NameDecoder& names);

}  // namespace hdiplot
