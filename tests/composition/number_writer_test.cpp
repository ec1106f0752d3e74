// The exact text of numbers.
#include "composition/number_writer.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <limits>
#include <random>
#include <string>

namespace hdi {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNotANumber = std::numeric_limits<float>::quiet_NaN();

std::string Written(float value, int precision) {
  std::array<char, kMaxNumberLength> text{};
  return {text.data(), WriteReal(text.data(), value, precision)};
}

std::string Reals(int precision, std::initializer_list<float> values) {
  std::string texts;
  for (const float value : values) texts += Written(value, precision) + " ";
  return texts;
}

std::string SixDigits(std::initializer_list<float> values) {
  std::string texts;
  for (const float value : values) {
    std::array<char, kMaxNumberLength> text{};
    texts += std::string(text.data(), WriteSixDigits(text.data(), value)) + " ";
  }
  return texts;
}

TEST(WriteReal, LimitsDecimals) {
  EXPECT_EQ(Reals(5, {0.0F, -0.0F, 0.5F, -0.5F, 0.24F, 0.024F, 1.5F, 10.5F, 100.25F, 1000.125F, 10000.0625F}),
            "0 0 .5 -.5 .24 .024 1.5 10.5 100.25 1000.125 10000.0625 ");
  // The f32 closest to five millionths is below them.
  EXPECT_EQ(Reals(5, {0.000004F, 0.000005F, 0.000006F, -0.00001F, 0.9999999F, 9.999996F, 7.5e-7F}),
            "0 0 .00001 -.00001 1 10 0 ");
  EXPECT_EQ(Reals(5, {12.3456F, 3.5277777F, 0.28346458F, -1234.5678F}),
            "12.3456 3.52778 .28346 -1234.56775 ");
  EXPECT_EQ(Reals(3, {12.3456F, -1234.5678F, 107.37418F}), "12.346 -1234.568 107.374 ");
  EXPECT_EQ(Reals(0, {0.5F, 0.4F, 12.3456F, 99.5F, -1234.5678F, 8388607.5F}), "1 0 12 100 -1235 8388608 ");
}

TEST(WriteReal, HasEightOrNineDigits) {
  EXPECT_EQ(Reals(5, {99999.99F, 100000.03F, 131071.99F, 1677721.5F, 8388607.5F}),
            "99999.992 100000.031 131071.992 1677721.5 8388607.5 ");
  EXPECT_EQ(Reals(5, {16777215, 16777216, 16777220, 123456792, 167772144, 167772160, 1e10F, -1.6777e20F}),
            "16777215 16777216 16777220 123456792 167772144 167772160 10000000000 -167769993000000000000 ");
  EXPECT_EQ(Reals(kUnlimited, {0.000004F, 7.5e-7F, 0.9999999F, 12.3456F, 3.5277777F, 123456.79F}),
            ".000004 .00000075000003 .99999988 12.3456001 3.5277777 123456.789 ");
  EXPECT_EQ(Reals(kUnlimited, {0.16777216F, 0.16777217F, 1.0737418F, 107.37418F, 1.1754944e-38F}),
            ".167772159 .16777217 1.07374179 107.374184 .0000000000000000000000000000000000000117549435 ");
  const std::string largest = "34028235" + std::string(31, '0');
  EXPECT_EQ(Reals(5, {kInfinity, -kInfinity, kNotANumber}), largest + " -" + largest + " 0 ");
}

TEST(WriteReal, WritesWholeNumbersLikeIntegers) {
  for (int32_t whole = -70000; whole < 0x1000000; whole += whole < 70000 ? 1 : 4999) {
    ASSERT_EQ(Written(static_cast<float>(whole), kPointPrecision), std::to_string(whole));
  }
}

TEST(WriteReal, UnlimitedPrecisionRoundTrips) {
  std::mt19937 random(5);
  for (int i = 0; i < 100000; ++i) {
    const auto value = std::bit_cast<float>(static_cast<uint32_t>(random()));
    if (!std::isnormal(value)) continue;
    const std::string text = Written(value, kUnlimited);
    ASSERT_EQ(std::strtof(text.c_str(), nullptr), value) << text;
  }
}

TEST(WriteSixDigits, HasNoExponent) {
  EXPECT_EQ(SixDigits({0, -0.0F, 100, -1.5F, 128.0F / 255.0F, 999999.4F, 999999.6F, -1234567, 4294967296}),
            "0 -0 100 -1.5 0.501961 999999 1000000 -1234570 4294970000 ");
  EXPECT_EQ(SixDigits({2e20F, 0.0001F, 5e-5F, -1.25e-6F, kNotANumber, -kInfinity}),
            "200000000000000000000 0.0001 0.00005 -0.00000125 0 -340282" + std::string(33, '0') + " ");
  EXPECT_EQ(SixDigits({1.17549e-38F}), "0." + std::string(37, '0') + "117549 ");
}

}  // namespace
}  // namespace hdi
