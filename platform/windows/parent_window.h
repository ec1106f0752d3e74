// The window that the companion module's dialogs lie over. Companion modules built for the platform's
// application framework take an object of that framework here, which this module can't make, as it is built
// without it: such a module and this driver are NOT compatible. A companion for this driver takes the record
// below, and nothing but its fields.
#pragma once

#include <cstdint>

namespace hdi {

inline constexpr uint32_t kParentWindowVersion = 1;

// Made for one call and gone behind it: a companion keeps no pointer to it. `size` grows with later versions,
// whose further fields follow these.
struct ParentWindow {
  uint32_t size = sizeof(ParentWindow);
  uint32_t version = kParentWindowVersion;
  void* window = nullptr;  // an HWND or null, not the companion's to destroy
};
static_assert(sizeof(ParentWindow) == 16);

}  // namespace hdi
