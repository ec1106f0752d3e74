// From the host's numbers to whole ones.
#pragma once

#include <cstdint>
#include <limits>

namespace hdi {

// Towards zero; what no i32 holds becomes the lowest one, as the processor's conversion has it.
[[nodiscard]] inline int32_t Truncate(double value) {
  const bool fits = value > -2147483649.0 && value < 2147483648.0;
  return fits ? static_cast<int32_t>(value) : std::numeric_limits<int32_t>::min();
}

}  // namespace hdi
