// Whole numbers are written from their integer, all others from a decimal of at most nine digits.
#include "composition/number_writer.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>

namespace hdi {
namespace {

// Powers of ten as the nearest f64, from 1e-31 to 1e54: f32 values range from 1.4e-45 to 3.4e38, scaled to
// nine digits.
constexpr int kLowestPower = -31;
constexpr int kHighestPower = 54;
constexpr std::array<double, kHighestPower - kLowestPower + 1> kPowersOfTen = {
    1e-31, 1e-30, 1e-29, 1e-28, 1e-27, 1e-26, 1e-25, 1e-24, 1e-23, 1e-22, 1e-21, 1e-20, 1e-19, 1e-18, 1e-17,
    1e-16, 1e-15, 1e-14, 1e-13, 1e-12, 1e-11, 1e-10, 1e-9,  1e-8,  1e-7,  1e-6,  1e-5,  1e-4,  1e-3,  1e-2,
    1e-1,  1e0,   1e1,   1e2,   1e3,   1e4,   1e5,   1e6,   1e7,   1e8,   1e9,   1e10,  1e11,  1e12,  1e13,
    1e14,  1e15,  1e16,  1e17,  1e18,  1e19,  1e20,  1e21,  1e22,  1e23,  1e24,  1e25,  1e26,  1e27,  1e28,
    1e29,  1e30,  1e31,  1e32,  1e33,  1e34,  1e35,  1e36,  1e37,  1e38,  1e39,  1e40,  1e41,  1e42,  1e43,
    1e44,  1e45,  1e46,  1e47,  1e48,  1e49,  1e50,  1e51,  1e52,  1e53,  1e54};

double PowerOfTen(int exponent) { return kPowersOfTen[static_cast<size_t>(exponent - kLowestPower)]; }

// The largest digits of an f32: ten times 2^24, less one.
constexpr int32_t kMostSignificant = 0x9FFFFFF;

// A positive value: digits times ten to the power `shift`.
struct Decimal {
  int32_t digits;
  int shift;
};

// Rounds by adding one half and truncating.
int32_t RoundHalfUp(double x) { return static_cast<int32_t>(x + 0.5); }

// The exponent that frexp returns. Every nonzero f32 is a normal f64.
int BinaryExponent(double x) { return static_cast<int>(std::bit_cast<uint64_t>(x) >> 52 & 0x7FF) - 1022; }

// floor(exponent * log10(2)): 78913 / 2^18 is accurate enough for every exponent of an f32.
int DecimalExponent(int exponent) { return (exponent * 78913) >> 18; }

Decimal ToDecimal(double x, int precision) {
  const int magnitude = DecimalExponent(BinaryExponent(x));
  int shift = magnitude - 8;
  if (precision >= 0) shift = std::max(shift, -precision);
  const double power = PowerOfTen(-shift);
  int32_t digits = RoundHalfUp(x * power);
  if (digits > kMostSignificant) {
    digits = RoundHalfUp(x * power * 0.1);
    shift = magnitude - 7;
  }
  while (digits % 10 == 0) {
    digits /= 10;
    ++shift;
  }
  return {digits, shift};
}

constexpr std::array<char, 200> kDigitPairs = [] {
  std::array<char, 200> pairs{};
  for (size_t i = 0; i < 100; ++i) {
    pairs[2 * i] = static_cast<char>('0' + i / 10);
    pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
  }
  return pairs;
}();

int CountDigits(uint32_t value) {
  if (value < 10) return 1;
  if (value < 100) return 2;
  if (value < 1000) return 3;
  if (value < 10000) return 4;
  if (value < 100000) return 5;
  if (value < 1000000) return 6;
  if (value < 10000000) return 7;
  if (value < 100000000) return 8;
  return value < 1000000000 ? 9 : 10;
}

char* WriteDigits(char* out, uint32_t value) {
  char* const end = out + CountDigits(value);
  char* at = end;
  while (value >= 100) {
    at -= 2;
    std::memcpy(at, &kDigitPairs[static_cast<size_t>(value % 100) * 2], 2);
    value /= 100;
  }
  if (value >= 10) {
    std::memcpy(at - 2, &kDigitPairs[static_cast<size_t>(value) * 2], 2);
  } else {
    at[-1] = static_cast<char>('0' + value);
  }
  return end;
}

char* WriteZeros(char* out, int count) {
  std::memset(out, '0', static_cast<size_t>(count));
  return out + count;
}

char* WriteDecimal(char* out, const Decimal& decimal) {
  const auto digits = static_cast<uint32_t>(decimal.digits);
  if (decimal.shift >= 0) return WriteZeros(WriteDigits(out, digits), decimal.shift);
  const int decimals = -decimal.shift;
  const int count = CountDigits(digits);
  if (count <= decimals) {
    *out++ = '.';
    return WriteDigits(WriteZeros(out, decimals - count), digits);
  }
  // Write the digits one place too far right, then move those before the point back.
  char* const end = WriteDigits(out + 1, digits);
  const int before = count - decimals;
  std::memmove(out, out + 1, static_cast<size_t>(before));
  out[before] = '.';
  return end;
}

bool RoundsToZero(float value, int precision) {
  return precision >= 0 && std::fabs(static_cast<double>(value) * PowerOfTen(precision)) < 0.5;
}

// Rewrites a number of the form [-]d[.ddddd]e+dd without its exponent. The number starts at `out`; its
// exponent extends from `exponent` to `end`.
char* WriteWithoutExponent(char* out, const char* exponent, const char* end) {
  if (*out == '-') ++out;
  std::array<char, 8> digits{};
  const std::string_view written(out, static_cast<size_t>(exponent - out));
  char* last = std::ranges::copy_if(written, digits.data(), [](char c) { return c != '.'; }).out;
  const auto count = static_cast<int>(last - digits.data());
  int power = 0;  // of the first digit
  std::from_chars(exponent + (exponent[1] == '+' ? 2 : 1), end, power);
  if (power < 0) {
    *out++ = '0';
    *out++ = '.';
    out = std::fill_n(out, -power - 1, '0');
    return std::copy(digits.data(), last, out);
  }
  out = std::copy(digits.data(), last, out);
  return std::fill_n(out, power + 1 - count, '0');
}

}  // namespace

char* WriteWhole(char* out, float value) {
  auto whole = static_cast<int32_t>(value);
  if (whole < 0) {
    *out++ = '-';
    whole = -whole;
  }
  return WriteDigits(out, static_cast<uint32_t>(whole));
}

char* WriteFraction(char* out, float value, int precision) {
  if (std::isnan(value) || RoundsToZero(value, precision)) {
    *out = '0';
    return out + 1;
  }
  constexpr float kLargest = std::numeric_limits<float>::max();
  value = std::clamp(value, -kLargest, kLargest);
  if (value < 0) *out++ = '-';
  return WriteDecimal(out, ToDecimal(std::fabs(static_cast<double>(value)), precision));
}

char* WriteSixDigits(char* out, float value) {
  if (std::isnan(value)) value = 0;
  constexpr float kLargest = std::numeric_limits<float>::max();
  value = std::clamp(value, -kLargest, kLargest);
  char* end =
      std::to_chars(out, out + kMaxNumberLength, static_cast<double>(value), std::chars_format::general, 6)
          .ptr;
  char* exponent = std::find(out, end, 'e');
  return exponent == end ? end : WriteWithoutExponent(out, exponent, end);
}

}  // namespace hdi
