// Values of options that are more than a word or a number.
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "hdiplot/command/options.h"
#include "hdiplot/command/printing.h"
#include "hdiplot/system/ascii_case.h"

namespace hdiplot {

namespace {

// Millimetres. PDF viewers show pages of 3 to 14400 points (ISO 32000-1:2008, Annex C); the lower limit is
// raised to what a plot can use.
constexpr double kSmallestPaper = 10;
constexpr double kLargestPaper = 5080;

std::vector<std::string_view> Split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  for (;;) {
    const size_t end = text.find(separator);
    parts.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return parts;
    text.remove_prefix(end + 1);
  }
}

// The whole text as a decimal number in the C locale.
std::optional<double> ToNumber(std::string_view text) {
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(number)) return std::nullopt;
  return number;
}

double RequireNumber(std::string_view text, const char* message) {
  const std::optional<double> number = ToNumber(text);
  if (!number) throw std::invalid_argument(message);
  return *number;
}

std::optional<std::pair<double, double>> TwoNumbers(std::string_view text, char separator) {
  const auto parts = Split(text, separator);
  const auto first = ToNumber(parts.front());
  const auto second = ToNumber(parts.back());
  return parts.size() == 2 && first && second ? std::optional(std::pair(*first, *second)) : std::nullopt;
}

// Throws for a size with another separator than x: it is not a paper name.
void RefuseMisspelledSize(std::string_view size) {
  for (const char separator : {',', ';', '*', ' '}) {
    if (!TwoNumbers(size, separator)) continue;
    std::string meant(size);
    meant[meant.find(separator)] = 'x';
    throw std::invalid_argument("must be NAME or WxH (did you mean " + meant + "?)");
  }
}

constexpr std::array<std::pair<std::string_view, Rgb>, 11> kColors = {{
    {"black", {0, 0, 0}},
    {"white", {255, 255, 255}},
    {"red", {255, 0, 0}},
    {"green", {0, 255, 0}},
    {"blue", {0, 0, 255}},
    {"yellow", {255, 255, 0}},
    {"cyan", {0, 255, 255}},
    {"magenta", {255, 0, 255}},
    {"gray", {128, 128, 128}},
    {"grey", {128, 128, 128}},
    {"ivory", {255, 255, 240}},
}};

std::optional<uint8_t> ToByte(std::string_view text, int base) {
  uint8_t byte = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), byte, base);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return byte;
}

}  // namespace

PaperChoice ParsePaper(const std::string& text) {
  if (text.empty()) throw std::invalid_argument("names no paper");
  const std::string lower = LowerCase(text);
  std::string_view size = lower;
  if (size.ends_with("mm")) size.remove_suffix(2);
  const auto numbers = TwoNumbers(size, 'x');
  if (!numbers) {
    RefuseMisspelledSize(size);
    return {text, std::nullopt};
  }
  for (const double length : {numbers->first, numbers->second}) {
    if (length < kSmallestPaper || length > kLargestPaper) {
      throw std::invalid_argument("a paper measures from 10 to 5080 millimetres each way");
    }
  }
  return {"", numbers};
}

Margins ParseMargins(const std::string& text) {
  constexpr const char* kMessage = "must be M or LEFT,TOP,RIGHT,BOTTOM in millimetres";
  const auto parts = Split(text, ',');
  if (parts.size() != 1 && parts.size() != 4) throw std::invalid_argument(kMessage);
  std::array<double, 4> sides{};
  for (size_t i = 0; i < sides.size(); ++i) {
    sides[i] = RequireNumber(parts[parts.size() == 1 ? 0 : i], kMessage);
    if (sides[i] < 0 || sides[i] > kLargestPaper) throw std::invalid_argument(kMessage);
  }
  return {sides[0], sides[1], sides[2], sides[3]};
}

double ParseScale(const std::string& text) {
  constexpr const char* kMessage = "must be 1:N, M:1 or N, above zero";
  const auto parts = Split(text, ':');
  if (parts.size() > 2) throw std::invalid_argument(kMessage);
  const double paper = parts.size() == 2 ? RequireNumber(parts[0], kMessage) : 1;
  const double drawing = RequireNumber(parts.back(), kMessage);
  const double scale = drawing / paper;
  if (!(paper > 0) || !(drawing > 0) || !std::isfinite(scale) || !(scale > 0)) {
    throw std::invalid_argument(kMessage);
  }
  return scale;
}

Rgb ParseColor(const std::string& text) {
  const auto named = std::ranges::find(kColors, LowerCase(text), &std::pair<std::string_view, Rgb>::first);
  if (named != kColors.end()) return named->second;

  const bool isHex = text.starts_with('#') && text.size() == 7;
  const std::string_view all = text;
  const auto parts =
      isHex ? std::vector{all.substr(1, 2), all.substr(3, 2), all.substr(5, 2)} : Split(all, ',');
  std::array<std::optional<uint8_t>, 3> bytes;
  if (parts.size() == bytes.size()) {
    std::ranges::transform(parts, bytes.begin(),
                           [isHex](auto part) { return ToByte(part, isHex ? 16 : 10); });
  }
  if (!bytes[0] || !bytes[1] || !bytes[2]) {
    throw std::invalid_argument("must be #RRGGBB, R,G,B or one of " +
                                Listed(kColors, [](const auto& color) { return color.first; }));
  }
  return {*bytes[0], *bytes[1], *bytes[2]};
}

}  // namespace hdiplot
