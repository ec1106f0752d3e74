#include "hdiplot/system/wildcard.h"

#include <unicode/utf8.h>

namespace hdiplot {

namespace {

// The place of the character behind the one at `at`.
size_t Behind(std::string_view text, size_t at) {
  const auto* bytes = reinterpret_cast<const uint8_t*>(text.data());
  U8_FWD_1(bytes, at, text.size());
  return at;
}

}  // namespace

bool MatchesWildcard(std::string_view pattern, std::string_view name) {
  size_t p = 0;
  size_t n = 0;
  // Where to go on when what follows the last star does not fit: the star takes one character more.
  size_t starBehind = std::string_view::npos;
  size_t starEnd = 0;
  while (n < name.size()) {
    if (p < pattern.size() && pattern[p] == '*') {
      starBehind = ++p;
      starEnd = n;
    } else if (p < pattern.size() && pattern[p] == '?') {
      ++p;
      n = Behind(name, n);
    } else if (p < pattern.size() && pattern[p] == name[n]) {
      ++p;
      ++n;
    } else if (starBehind != std::string_view::npos) {
      p = starBehind;
      n = starEnd = Behind(name, starEnd);
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == '*') ++p;
  return p == pattern.size();
}

}  // namespace hdiplot
