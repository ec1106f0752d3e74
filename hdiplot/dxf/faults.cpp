#include "hdiplot/dxf/faults.h"

#include <algorithm>
#include <limits>

namespace hdiplot {
namespace {

// Characters below `lowest` and control characters become question marks.
std::string Shortened(std::string_view text, char lowest) {
  constexpr size_t kLongest = 40;
  std::string shown(text.substr(0, kLongest));
  std::ranges::replace_if(
      shown, [lowest](char c) { return (c >= 0 && c < 0x20) || c == 0x7f || c < lowest; }, '?');
  return text.size() > kLongest ? shown + "..." : shown;
}

}  // namespace

std::string Quoted(std::string_view text) {
  const std::string shown = Shortened(text, std::numeric_limits<char>::min());
  return '"' + shown + '"';
}

std::string TypeName(std::string_view type) { return Shortened(type, 0x20); }

}  // namespace hdiplot
