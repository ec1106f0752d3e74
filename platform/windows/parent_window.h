// The parent window that the companion module's dialogs get. Companion modules built for the platform's
// application framework expect an object of that framework here, which this module cannot create because it
// is built without it: such a module is NOT compatible with this driver. A companion for this driver may use
// only the fields of the record below.
#pragma once

#include <cstdint>

namespace hdi {

inline constexpr uint32_t kParentWindowVersion = 1;

// Exists for the duration of one call; a companion must not keep a pointer to it. `size` grows in later
// versions, which append fields.
struct ParentWindow {
  uint32_t size = sizeof(ParentWindow);
  uint32_t version = kParentWindowVersion;
  void* window = nullptr;  // an HWND or null, not owned by the companion
};
static_assert(sizeof(ParentWindow) == 16);

}  // namespace hdi
