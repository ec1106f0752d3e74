// The parent that a companion module is handed, which every platform makes in a way of its own.
#pragma once

#include <cstdint>

namespace border {

// The host's window handle, as a number.
[[nodiscard]] uint64_t WindowOf(const void* parent);

}  // namespace border
