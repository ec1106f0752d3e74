// Defaults of the settings record. They are built in, so a missing file or key is never an error.
#pragma once

#include "platform/border.h"

namespace hdi {

// Returns the record of a new device: A4 portrait at 600 dots per inch, no background, layers, links and the
// viewer on.
[[nodiscard]] DriverDevMode DefaultDevMode();

}  // namespace hdi
