// The scenes' random numbers.
#pragma once

#include <cstddef>
#include <cstdint>

namespace bench {

// SplitMix64. Unlike the standard library's distributions, it gives the same numbers everywhere.
class Random {
 public:
  explicit Random(uint64_t seed) : state_(seed) {}

  // An integer in [0, limit).
  [[nodiscard]] int32_t Below(int32_t limit) {
    state_ += 0x9E3779B97F4A7C15;
    uint64_t bits = state_;
    bits = (bits ^ (bits >> 30)) * 0xBF58476D1CE4E5B9;
    bits = (bits ^ (bits >> 27)) * 0x94D049BB133111EB;
    bits ^= bits >> 31;
    return static_cast<int32_t>((bits >> 32) * static_cast<uint64_t>(limit) >> 32);
  }

  // An element of an array.
  template <typename Values>
  [[nodiscard]] const auto& OneOf(const Values& values) {
    return values[static_cast<size_t>(Below(static_cast<int32_t>(values.size())))];
  }

 private:
  uint64_t state_;
};

}  // namespace bench
