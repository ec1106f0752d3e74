#include "hdiplot/system/wildcard.h"

#include <unicode/utf8.h>

#include <algorithm>

#include "hdiplot/system/names.h"
#include "hdiplot/system/paths.h"

namespace hdiplot {

namespace fs = std::filesystem;

namespace {

// The index of the character after the one at `at`.
size_t Behind(std::string_view text, size_t at) {
  const auto* bytes = reinterpret_cast<const uint8_t*>(text.data());
  U8_FWD_1(bytes, at, text.size());
  return at;
}

}  // namespace

bool MatchesWildcard(std::string_view pattern, std::string_view name) {
  size_t p = 0;
  size_t n = 0;
  // Where to continue when what follows the last star does not match: the star then takes one more character.
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

std::vector<fs::path> NamesMatching(const fs::path& directory, std::string_view pattern,
                                    std::error_code& error) {
  const std::string folded = FoldedName(pattern);
  std::vector<fs::path> names;
  for (fs::directory_iterator entry(directory, error), end; !error && entry != end; entry.increment(error)) {
    const fs::path name = entry->path().filename();
    if (MatchesWildcard(folded, FoldedName(PathText(name)))) names.push_back(name);
  }
  // As file managers sort: without regard to case.
  std::ranges::sort(names, {}, [](const fs::path& name) { return FoldedName(PathText(name)); });
  return error ? std::vector<fs::path>() : names;
}

}  // namespace hdiplot
