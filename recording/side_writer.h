// Writes the side data of a record piece by piece.
#pragma once

#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

namespace hdi {

// Writes from `at` on. The caller must have allocated as many bytes as it appends.
class SideWriter {
 public:
  explicit SideWriter(uint8_t* at) : at_(at) {}

  template <typename Value>
  void Append(std::span<const Value> values) {
    if (!values.empty()) std::memcpy(at_, values.data(), values.size_bytes());
    at_ += values.size_bytes();
  }
  template <typename Value>
  void Append(const Value& value) {
    Append(std::span(&value, 1));
  }
  void Append(std::u16string_view units) { Append(std::span(units.data(), units.size())); }

 private:
  uint8_t* at_;
};

}  // namespace hdi
