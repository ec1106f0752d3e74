#include "host/hdiplot/plot/wildcard.h"

#include "platform/unicode.h"

namespace hdiplot {

namespace {

char16_t Folded(char16_t unit) {
  const auto in = [unit](char16_t low, char16_t high) { return unit >= low && unit <= high; };
  const auto minus = [unit](int distance) { return static_cast<char16_t>(unit - distance); };
  if (in(u'a', u'z')) return minus(0x20);
  if (in(0xE0, 0xFE) && unit != 0xF7) return minus(0x20);     // Latin-1, but for the division sign
  if (in(0x3B1, 0x3C9) && unit != 0x3C2) return minus(0x20);  // Greek, but for the final sigma
  if (in(0x430, 0x44F)) return minus(0x20);                   // Cyrillic
  if (in(0x450, 0x45F)) return minus(0x50);
  return unit;
}

}  // namespace

std::u16string FoldedCase(std::string_view text) {
  std::u16string folded = hdi::ToUtf16(text);
  for (char16_t& unit : folded) unit = Folded(unit);
  return folded;
}

bool MatchesWildcard(std::u16string_view pattern, std::u16string_view name) {
  size_t p = 0;
  size_t n = 0;
  // Where to go on when what follows the last star does not fit: the star takes one character more.
  size_t starBehind = std::u16string_view::npos;
  size_t starEnd = 0;
  while (n < name.size()) {
    if (p < pattern.size() && pattern[p] == u'*') {
      starBehind = ++p;
      starEnd = n;
    } else if (p < pattern.size() && (pattern[p] == u'?' || pattern[p] == name[n])) {
      ++p;
      ++n;
    } else if (starBehind != std::u16string_view::npos) {
      p = starBehind;
      n = ++starEnd;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == u'*') ++p;
  return p == pattern.size();
}

}  // namespace hdiplot
