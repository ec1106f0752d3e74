// The function that every fuzz target defines, and helpers to split inputs and to report wrong results.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string_view>

// Runs the target on an input; the name is libFuzzer's. Returns 0.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace fuzzing {

// Aborts unless `holds`, so that libFuzzer saves the input. Prints `what` is wrong with `about`.
inline void Require(bool holds, const char* what, std::string_view about) {
  if (holds) return;
  std::fprintf(stderr, "%s: %.*s\n", what, static_cast<int>(about.size()), about.data());
  std::abort();
}

// Whether `text` is a number of a content stream (ISO 32000-1:2008, 7.3.3).
[[nodiscard]] inline bool IsPdfNumber(std::string_view text) {
  if (text.starts_with('-')) text.remove_prefix(1);
  return text.find_first_of("0123456789") != std::string_view::npos && std::ranges::count(text, '.') <= 1 &&
         text.find_first_not_of(".0123456789") == std::string_view::npos;
}

class ByteSource {
 public:
  ByteSource(const uint8_t* data, size_t size) : rest_(data, size) {}

  [[nodiscard]] std::span<const uint8_t> Rest() const { return rest_; }

  // A value with arbitrary bits. Missing bytes are zero.
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

  // A typical coordinate: a small integer, a fraction, or an arbitrary number.
  [[nodiscard]] float TakeNumber() {
    const uint8_t kind = TakeUpTo(3);
    if (kind < 2) return Take<int8_t>();
    return kind == 2 ? static_cast<float>(Take<int16_t>()) / 100.0F : Take<float>();
  }

 private:
  std::span<const uint8_t> rest_;
};

}  // namespace fuzzing
