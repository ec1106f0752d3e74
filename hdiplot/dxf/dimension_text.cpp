// Lengths are decimal, scientific, or of feet and inches, decimal or with fractions.
#include "hdiplot/dxf/dimension_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <numeric>

namespace hdiplot {
namespace {

constexpr int kMostDecimals = 8;
constexpr double kInchesPerFoot = 12;
constexpr double kLargestFeet = 1e12;  // beyond, all lengths are decimal

constexpr int kScientific = 1;
constexpr int kEngineering = 3;    // feet, and decimal inches
constexpr int kArchitectural = 4;  // feet, and inches with fractions
constexpr int kFractional = 5;

// Bits of the style's `zeros` for decimals.
constexpr unsigned kNoLeadingZeros = 4;
constexpr unsigned kNoTrailingZeros = 8;

int Count(double value, int most) {
  return static_cast<int>(std::clamp(value, 0.0, static_cast<double>(most)));
}

std::string Decimal(double value, int decimals, unsigned zeros, char separator) {
  std::string text = fmt::format("{:.{}f}", value, decimals);
  if ((zeros & kNoTrailingZeros) != 0 && decimals > 0) {
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.')) text.pop_back();
  }
  if ((zeros & kNoLeadingZeros) != 0 && text.starts_with("0.")) text.erase(0, 1);
  std::ranges::replace(text, '.', separator);
  return text.empty() ? "0" : text;
}

unsigned ZerosOf(const DimensionStyle& style) { return static_cast<unsigned>(Count(style.zeros, 15)); }

char SeparatorOf(const DimensionStyle& style) {
  const int separator = Count(style.separator, 126);
  return separator > ' ' ? static_cast<char>(separator) : '.';
}

// To the nearest 1/2^decimals. `hasWhole`: with a zero before a mere fraction.
std::string Fraction(double value, int decimals, bool hasWhole) {
  const int64_t parts = int64_t{1} << decimals;
  const int64_t count = std::llround(value * static_cast<double>(parts));
  const int64_t whole = count / parts;
  const int64_t rest = count % parts;
  if (rest == 0) return std::to_string(whole);
  const int64_t divisor = std::gcd(rest, parts);
  const std::string fraction = fmt::format("\\S{}/{};", rest / divisor, parts / divisor);
  return whole == 0 && !hasWhole ? fraction : fmt::format("{} {}", whole, fraction);
}

// The low bits of `zeros` say whether zero feet (0 and 3) and zero inches (0 and 2) are left out.
std::string FeetAndInches(double inches, bool isDecimal, int decimals, const DimensionStyle& style) {
  const unsigned zeros = ZerosOf(style) & 3U;
  const double steps = isDecimal ? std::pow(10, decimals) : std::pow(2, decimals);
  const double rounded = std::round(inches * steps) / steps;
  const double feet = std::floor(rounded / kInchesPerFoot);
  const double rest = rounded - feet * kInchesPerFoot;
  const bool hidesFeet = feet == 0 && (zeros == 0 || zeros == 3);
  const bool hidesInches = rest == 0 && (zeros == 0 || zeros == 2) && !hidesFeet;
  std::string text = hidesFeet ? "" : fmt::format("{:.0f}'", feet);
  if (hidesInches) return text;
  if (!hidesFeet) text += '-';
  text += isDecimal ? Decimal(rest, decimals, ZerosOf(style), SeparatorOf(style))
                    : Fraction(rest, decimals, !hidesFeet);
  return text + '"';
}

std::string LengthValue(double length, const DimensionStyle& style) {
  const int decimals = Count(style.decimals, kMostDecimals);
  if (length > kLargestFeet) return Decimal(length, 0, 0, '.');
  switch (Count(style.lengthUnit, 6)) {
    case kScientific:
      return fmt::format("{:.{}E}", length, decimals);
    case kEngineering:
      return FeetAndInches(length, true, decimals, style);
    case kArchitectural:
      return FeetAndInches(length, false, decimals, style);
    case kFractional:
      return Fraction(length, decimals, false);
    default:
      return Decimal(length, decimals, ZerosOf(style), SeparatorOf(style));
  }
}

}  // namespace

std::string LengthText(double length, const std::string& mark, const DimensionStyle& style) {
  constexpr std::string_view kValue = "<>";
  double measured = length * std::abs(style.lengthFactor != 0 ? style.lengthFactor : 1);
  if (style.rounding > 0) measured = std::round(measured / style.rounding) * style.rounding;
  const std::string value = mark + LengthValue(measured, style);
  const size_t at = style.around.find(kValue);
  if (at == std::string::npos) return value + style.around;
  return std::string(style.around).replace(at, kValue.size(), value);
}

std::string AngleText(double radians, const DimensionStyle& style) {
  constexpr int kMinutesAndSeconds = 1;
  constexpr int kGradians = 2;
  constexpr int kRadians = 3;
  const int decimals = Count(style.angleDecimals < 0 ? style.decimals : style.angleDecimals, kMostDecimals);
  // The bits are those of lengths, divided by 4.
  const unsigned zeros = static_cast<unsigned>(Count(style.angleZeros, 3)) * kNoLeadingZeros;
  const auto decimal = [&](double value) { return Decimal(value, decimals, zeros, SeparatorOf(style)); };
  const double degrees = radians * 180 / std::numbers::pi;
  switch (Count(style.angleUnit, 4)) {
    case kMinutesAndSeconds: {
      const auto seconds = std::llround(degrees * 3600);
      std::string text = fmt::format("{}°", seconds / 3600);
      if (decimals > 0) text += fmt::format("{}'", seconds / 60 % 60);
      if (decimals > 2) text += fmt::format("{}\"", seconds % 60);
      return text;
    }
    case kGradians:
      return decimal(radians * 200 / std::numbers::pi) + "g";
    case kRadians:
      return decimal(radians) + "r";
    default:
      return decimal(degrees) + "°";
  }
}

}  // namespace hdiplot
