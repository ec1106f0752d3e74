// The paper list used without a paper file.
#pragma once

#include <vector>

#include "platform/host_library.h"

namespace hdi {

[[nodiscard]] std::vector<PaperSize> BuiltInPapers();

}  // namespace hdi
