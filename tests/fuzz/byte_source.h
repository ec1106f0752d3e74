// Takes an input apart into values.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace fuzzing {

class ByteSource {
 public:
  ByteSource(const uint8_t* data, size_t size) : rest_(data, size) {}

  [[nodiscard]] bool IsEmpty() const { return rest_.empty(); }
  [[nodiscard]] std::span<const uint8_t> Rest() const { return rest_; }

  // A value of any bits. Bytes that are not there are zero.
  template <typename Value>
  [[nodiscard]] Value Take() {
    Value value{};
    const size_t taken = std::min(sizeof value, rest_.size());
    std::memcpy(&value, rest_.data(), taken);
    rest_ = rest_.subspan(taken);
    return value;
  }

  // 0 to `most`.
  [[nodiscard]] uint8_t TakeUpTo(uint8_t most) { return static_cast<uint8_t>(Take<uint8_t>() % (most + 1)); }

  // As coordinates are, mostly: a small whole number, a fraction, or any number at all.
  [[nodiscard]] float TakeNumber() {
    const uint8_t kind = TakeUpTo(3);
    if (kind < 2) return Take<int8_t>();
    return kind == 2 ? static_cast<float>(Take<int16_t>()) / 100.0F : Take<float>();
  }

 private:
  std::span<const uint8_t> rest_;
};

}  // namespace fuzzing
