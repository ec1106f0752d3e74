// The papers of a device.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/border.h"

namespace hdiplot {

// The device's paper list, in its order.
[[nodiscard]] std::vector<hdi::PaperSize> PapersOf(hdi::HT_Driver& driver);

[[nodiscard]] std::string NameOf(const hdi::PaperSize& paper);

// The first paper of this name, without regard to case; null when there is none.
[[nodiscard]] const hdi::PaperSize* FindPaper(const std::vector<hdi::PaperSize>& papers,
                                              std::string_view name);

}  // namespace hdiplot
