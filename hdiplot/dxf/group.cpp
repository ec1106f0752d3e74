#include "hdiplot/dxf/group.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace hdiplot {
namespace {

std::string Shortened(std::string_view text, char lowest) {
  constexpr size_t kLongest = 40;
  std::string shown(text.substr(0, kLongest));
  std::ranges::replace_if(
      shown, [lowest](char c) { return (c >= 0 && c < 0x20) || c == 0x7f || c < lowest; }, '?');
  return text.size() > kLongest ? shown + "..." : shown;
}

}  // namespace

std::string NumberProblem(int code, double number, std::string_view written) {
  const bool isReal = FormOf(code) == ValueForm::kReal;
  if (isReal && !std::isnan(number)) return "the number " + Quoted(written) + " is too large for a drawing";
  return "group " + std::to_string(code) + " takes a " + (isReal ? "" : "whole ") +
         "number, but its value is " + Quoted(written);
}

bool StartsObject(int code, std::string_view value) {
  if (code == 9 && !value.starts_with('$')) return false;
  if (code == 9) value.remove_prefix(1);
  const auto isLetter = [](char c) { return c >= 'A' && c <= 'Z'; };
  return (code == 0 || code == 9) && value.size() > 2 && std::ranges::any_of(value, isLetter) &&
         std::ranges::all_of(value,
                             [&](char c) { return isLetter(c) || c == '_' || (c >= '0' && c <= '9'); });
}

std::string Quoted(std::string_view text) {
  const std::string shown = Shortened(text, std::numeric_limits<char>::min());
  return '"' + shown + '"';
}

std::string TypeName(std::string_view type) { return Shortened(type, 0x20); }

}  // namespace hdiplot
