// The number writer: any number at any precision comes out in the form of a PDF and as close as it says.
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "composition/number_writer.h"
#include "tests/fuzz/byte_source.h"
#include "tests/fuzz/fuzz_target.h"
#include "tests/fuzz/pdf_number.h"

namespace {

using fuzzing::Require;

// What a number stands for in the stream.
float Meant(float value) {
  constexpr float kLargest = std::numeric_limits<float>::max();
  return std::isnan(value) ? 0.0F : std::clamp(value, -kLargest, kLargest);
}

// Reads the text back, having looked at its form.
template <typename Number>
Number ReadBack(std::string_view text) {
  Require(fuzzing::IsPdfNumber(text), "no number of a PDF", text);
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  // The digits of the smallest numbers may round to nothing, which the reader tells as an error.
  Require(end == text.data() + text.size(), "cannot be read back", text);
  static_cast<void>(error);
  return number;
}

void CheckReal(float value, int precision) {
  std::array<char, hdi::kMaxNumberLength> room{};
  const std::string_view text(room.data(), hdi::WriteReal(room.data(), value, precision));
  if (precision == hdi::kUnlimited) {
    Require(ReadBack<float>(text) == Meant(value), "is another f32", text);
    return;
  }
  const double meant = Meant(value);
  const double room8Digits = std::fabs(meant) * 6e-8;
  Require(std::fabs(ReadBack<double>(text) - meant) <= 0.5001 * std::pow(10, -precision) + room8Digits,
          "is too far off", text);
}

void CheckSixDigits(float value) {
  std::array<char, hdi::kMaxNumberLength> room{};
  const std::string_view text(room.data(), hdi::WriteSixDigits(room.data(), value));
  const double meant = Meant(value);
  Require(std::fabs(ReadBack<double>(text) - meant) <= std::fabs(meant) * 5.001e-6, "is too far off", text);
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzzing::ByteSource source(data, size);
  while (!source.IsEmpty()) {
    const auto value = source.Take<float>();
    for (const int precision : {hdi::kPointPrecision, hdi::kFontSizePrecision, hdi::kUnlimited}) {
      CheckReal(value, precision);
    }
    CheckSixDigits(value);
  }
  return 0;
}
