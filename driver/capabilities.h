// Device capabilities, by which the host lays out a drawing.
#pragma once

#include <cstdint>

#include "platform/border.h"

namespace hdi {

// Returns a capability computed from the driver's record: GetDeviceCaps indexes, and the host's own from 175;
// 0 if unknown.
uint32_t DevGetCaps(HostDevice* device, int32_t index);

}  // namespace hdi
