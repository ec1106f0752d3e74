// The number writer against a slow, literal account of its rules, and the values at its edges.
#include "composition/number_writer.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>

namespace hdi {
namespace {

std::string Written(float value, int precision) {
  std::array<char, kMaxNumberLength> text{};
  return {text.data(), WriteReal(text.data(), value, precision)};
}

std::string SixDigits(float value) {
  std::array<char, kMaxNumberLength> text{};
  return {text.data(), WriteSixDigits(text.data(), value)};
}

// The nearest f64 to a power of ten, through the C library's exact conversion.
double PowerOfTen(int exponent) { return std::strtod(("1e" + std::to_string(exponent)).c_str(), nullptr); }

// The rules one after the other, on strings.
std::string WrittenByTheRules(float value, int precision) {
  if (std::isinf(value)) value = std::copysign(std::numeric_limits<float>::max(), value);
  if (std::isnan(value) || value == 0) return "0";
  if (precision >= 0 && std::round(PowerOfTen(precision) * static_cast<double>(value)) == 0) return "0";
  std::string text = value < 0 ? "-" : "";
  const double x = std::fabs(static_cast<double>(value));
  int e = 0;
  std::frexp(x, &e);
  const int s = static_cast<int>(std::floor(e * 0.3010299956639812));
  int a = s - 8;
  if (precision >= 0 && a < -precision) a = -precision;
  auto n = static_cast<int64_t>(x * PowerOfTen(-a) + 0.5);
  if (n > 0x9FFFFFF) {
    n = static_cast<int64_t>(x * PowerOfTen(-a) * 0.1 + 0.5);
    a = s - 7;
  }
  for (; n % 10 == 0; ++a) n /= 10;
  std::string digits = std::to_string(n);
  if (a >= 0) return text + digits + std::string(static_cast<size_t>(a), '0');
  const auto decimals = static_cast<size_t>(-a);
  if (digits.size() < decimals) digits.insert(0, decimals - digits.size(), '0');
  digits.insert(digits.size() - decimals, 1, '.');
  return text + digits;
}

TEST(WriteReal, FollowsTheRulesOverRandomValuesOfEveryMagnitude) {
  std::mt19937_64 random(20240229);
  for (int i = 0; i < 1000000; ++i) {
    const uint64_t draw = random();
    float value = 0;
    if (draw % 4 == 0) {  // any bit pattern
      const auto pattern = static_cast<uint32_t>(draw >> 32);
      std::memcpy(&value, &pattern, sizeof value);
    } else {  // the magnitudes of a plot
      const auto scale = static_cast<float>(PowerOfTen(static_cast<int>(draw >> 8 & 0xF) - 6));
      value = (static_cast<float>(draw >> 40) / 8388608.0F - 1.0F) * scale;
      if (draw % 4 == 1) value = std::round(value);
      if (draw % 4 == 2) value = std::round(value * 8) / 8;
    }
    const int precision = static_cast<int>(draw >> 4 & 0x7) - 1;
    ASSERT_EQ(Written(value, precision), WrittenByTheRules(value, precision)) << value << " at " << precision;
  }
}

TEST(WriteReal, WholeNumbersTakeTheFastPathAndComeOutTheSame) {
  for (int32_t whole = -70000; whole <= 70000; ++whole) {
    const auto value = static_cast<float>(whole);
    ASSERT_EQ(Written(value, kPointPrecision), std::to_string(whole));
  }
  for (int32_t whole = 70001; whole < 0x1000000; whole += 4999) {
    const auto value = static_cast<float>(whole);
    ASSERT_TRUE(IsSmallWhole(value));
    for (const int precision : {kUnlimited, 0, kPointPrecision}) {
      ASSERT_EQ(Written(value, precision), WrittenByTheRules(value, precision));
    }
  }
}

TEST(WriteReal, EdgeValues) {
  struct Case {
    float value;
    int precision;
    const char* text;
  };
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  const Case cases[] = {
      {0.0F, 5, "0"},
      {-0.0F, 5, "0"},
      {std::numeric_limits<float>::quiet_NaN(), 5, "0"},
      {-0.5F, 5, "-.5"},
      {1000.0F, 5, "1000"},
      {0.24F, 5, ".24"},
      {0.024F, 5, ".024"},
      {0.000004F, 5, "0"},
      {0.000005F, 5, "0"},  // the f32 lies below five millionths
      {0.000006F, 5, ".00001"},
      {0.000004F, kUnlimited, ".000004"},
      {16777215.0F, 5, "16777215"},
      {16777216.0F, 5, "16777216"},
      {167772160.0F, 5, "167772160"},
      {kInfinity, 5, "340282350000000000000000000000000000000"},
      {-kInfinity, 5, "-340282350000000000000000000000000000000"},
      {std::numeric_limits<float>::max(), kUnlimited, "340282350000000000000000000000000000000"},
      {12.3456F, 3, "12.346"},
      {0.9999999F, 5, "1"},
      {0.4F, 0, "0"},
      {0.5F, 0, "1"},
  };
  for (const Case& c : cases) EXPECT_EQ(Written(c.value, c.precision), c.text) << c.value;
  EXPECT_EQ(Written(std::numeric_limits<float>::denorm_min(), kUnlimited),
            WrittenByTheRules(std::numeric_limits<float>::denorm_min(), kUnlimited));
}

TEST(WriteReal, UnlimitedPrecisionGivesTheSameFloatBack) {
  std::mt19937 random(5);
  for (int i = 0; i < 100000; ++i) {
    const uint32_t pattern = static_cast<uint32_t>(random()) & 0x7FFFFFFF;
    float value = 0;
    std::memcpy(&value, &pattern, sizeof value);
    if (!std::isnormal(value)) continue;
    const std::string text = Written(value, kUnlimited);
    ASSERT_EQ(std::strtof(text.c_str(), nullptr), value) << text;
  }
}

TEST(WriteSixDigits, IsTheGeneralFormOfPrintf) {
  std::mt19937 random(6);
  for (int i = 0; i < 50000; ++i) {
    const float value =
        std::ldexp(static_cast<float>(random() >> 8) - 8388608.0F, static_cast<int>(random() % 60) - 40);
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%g", static_cast<double>(value));
    const std::string written = SixDigits(value);
    if (std::string_view(text.data()).find('e') == std::string_view::npos) {
      ASSERT_EQ(written, text.data());
    } else {  // the same number in full
      ASSERT_EQ(written.find('e'), std::string::npos) << written;
      ASSERT_EQ(std::strtof(written.c_str(), nullptr), std::strtof(text.data(), nullptr)) << written;
    }
  }
  EXPECT_EQ(SixDigits(5e-5F), "0.00005");
  EXPECT_EQ(SixDigits(-1.25e-6F), "-0.00000125");
  EXPECT_EQ(SixDigits(4294967296.0F), "4294970000");
  EXPECT_EQ(SixDigits(-std::numeric_limits<float>::infinity()), "-340282" + std::string(33, '0'));
  EXPECT_EQ(SixDigits(std::numeric_limits<float>::quiet_NaN()), "0");
  EXPECT_EQ(SixDigits(128.0F / 255.0F), "0.501961");
  EXPECT_EQ(SixDigits(100.0F), "100");
}

}  // namespace
}  // namespace hdi
