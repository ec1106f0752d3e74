// The number writer: every number at every precision is written as a valid PDF number within the stated
// error.
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "composition/number_writer.h"
#include "tests/fuzz/fuzz_target.h"

namespace {

using fuzzing::Require;

// Parses `text` after checking that it is a valid PDF number.
template <typename Number>
Number ReadBack(std::string_view text) {
  Number number{};
  // The smallest numbers may underflow, which from_chars reports as an error.
  const char* const end = std::from_chars(text.data(), text.data() + text.size(), number).ptr;
  Require(fuzzing::IsPdfNumber(text) && end == text.data() + text.size(), "not a PDF number", text);
  return number;
}

void Check(float value) {
  constexpr float kLargest = std::numeric_limits<float>::max();
  const float meant = std::isnan(value) ? 0.0F : std::clamp(value, -kLargest, kLargest);
  const double size = std::fabs(static_cast<double>(meant));
  std::array<char, hdi::kMaxNumberLength> room{};
  const auto requireNear = [&](const char* end, double tolerance) {
    const std::string_view text(room.data(), end);
    Require(std::fabs(ReadBack<double>(text) - static_cast<double>(meant)) <= tolerance, "is too far off",
            text);
  };
  requireNear(hdi::WriteReal(room.data(), value, hdi::kPointPrecision), 0.50001e-5 + size * 6e-8);
  requireNear(hdi::WriteReal(room.data(), value, hdi::kFontSizePrecision), 0.50001e-3 + size * 6e-8);
  requireNear(hdi::WriteSixDigits(room.data(), value), size * 5.001e-6);
  const std::string_view whole(room.data(), hdi::WriteReal(room.data(), value, hdi::kUnlimited));
  Require(ReadBack<float>(whole) == meant, "is another f32", whole);
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzzing::ByteSource source(data, size);
  while (!source.Rest().empty()) Check(source.Take<float>());
  return 0;
}
