// The parent that a companion module gets. linux/parent.cpp knows its form.
#pragma once

#include <cstdint>

namespace border {

// Returns the host's window handle as a number.
[[nodiscard]] uint64_t WindowOf(const void* parent);

}  // namespace border
