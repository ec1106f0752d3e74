// Defaults of the settings record. They live in the code: a missing file or key never fails.
#pragma once

#include "platform/border.h"

namespace hdi {

// The record of a fresh device: A4 upright at 600 dots per inch, no background, layers and links on, the
// viewer on.
[[nodiscard]] DriverDevMode DefaultDevMode();

}  // namespace hdi
