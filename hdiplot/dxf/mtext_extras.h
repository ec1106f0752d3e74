// The columns, the mask and the frame of an MTEXT.
#pragma once

#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "hdiplot/dxf/dxf_object.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

// Null for a text without any of them. Lengths are multiplied by `scale`. Columns are in the embedded object
// or, up to R2013, in extended data.
[[nodiscard]] std::shared_ptr<MTextExtras> ReadMTextExtras(const DxfObject& object, double scale);

// `flags` are those of group 90 of MTEXT; `boxScale` is its group 45.
[[nodiscard]] MTextPanel PanelOf(uint64_t flags, double boxScale);

// The handles of the texts that files up to R2013 have for all columns but the first.
[[nodiscard]] std::vector<std::string_view> LinkedColumnsOf(const DxfObject& object);

}  // namespace hdiplot
