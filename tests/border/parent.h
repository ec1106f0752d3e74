// The parent that a companion module is handed; linux/parent.cpp knows its form there.
#pragma once

#include <cstdint>

namespace border {

// The host's window handle, as a number.
[[nodiscard]] uint64_t WindowOf(const void* parent);

}  // namespace border
