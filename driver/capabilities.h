// The device as the host lays a drawing out on it.
#pragma once

#include <cstdint>

#include "platform/border.h"

namespace hdi {

// A capability of the device, computed from the driver's record: indexes as GetDeviceCaps has them, and the
// host's own from 175 on; 0 for what it does not know.
uint32_t DevGetCaps(HostDevice* device, int32_t index);

}  // namespace hdi
