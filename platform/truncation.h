// Conversion of the host's f64 values to integers.
#pragma once

#include <cstdint>
#include <limits>

namespace hdi {

// Truncates towards zero. Values outside i32 become its minimum, as in the processor's conversion.
[[nodiscard]] inline int32_t Truncate(double value) {
  const bool fits = value > -2147483649.0 && value < 2147483648.0;
  return fits ? static_cast<int32_t>(value) : std::numeric_limits<int32_t>::min();
}

}  // namespace hdi
