// Damaged files of all kinds are either read or refused with a FileError, never anything else.
#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <vector>

#include "tests/hdiplot_dxf/dxf_writing.h"

namespace hdiplot {
namespace {

using dxf_writing::ErrorOf;
using dxf_writing::Specimen;

using Random = std::mt19937;

size_t Below(Random& random, size_t bound) {
  return std::uniform_int_distribution<size_t>(0, bound - 1)(random);
}

const char* const kOddValues[] = {
    "",           "0",    "-1",    "1",      "2",     "3",   "128", "65535", "2147483647", "-2147483648",
    "4294967295", "1e29", "-1e29", "1e-300", "1e308", "nan", "abc", "LINE",  "SECTION"};

// Lines come in twos; changes by whole groups get deeper into the reader.
void Damage(std::vector<std::string>& lines, Random& random) {
  const size_t groups = lines.size() / 2;
  const size_t at = 2 * Below(random, groups);
  const auto place = lines.begin() + static_cast<std::ptrdiff_t>(at);
  switch (Below(random, 6)) {
    case 0:
      lines[at + 1] = kOddValues[Below(random, std::size(kOddValues))];
      break;
    case 1:
      lines[at] = std::to_string(Below(random, 100));
      break;
    case 2:
      lines.erase(place, place + 2);
      break;
    case 3: {
      const size_t from = 2 * Below(random, groups);
      const std::vector<std::string> copy = {lines[from], lines[from + 1]};
      lines.insert(place, copy.begin(), copy.end());
      break;
    }
    case 4:
      std::swap(lines[at + 1], lines[2 * Below(random, groups) + 1]);
      break;
    default: {
      std::string& line = lines[Below(random, lines.size())];
      line.insert(Below(random, line.size() + 1), 1, static_cast<char>(1 + Below(random, 255)));
    }
  }
}

TEST(Mutations, NeverCrash) {
  std::vector<std::string> whole;
  std::istringstream specimen(Specimen());
  for (std::string line; std::getline(specimen, line);) whole.push_back(line);
  int refused = 0;
  constexpr int kRounds = 1000;
  for (unsigned seed = 0; seed < kRounds; ++seed) {
    Random random(seed);
    std::vector<std::string> lines = whole;
    for (size_t changes = 1 + Below(random, 4); changes > 0 && lines.size() > 2; --changes)
      Damage(lines, random);
    std::string text;
    for (const std::string& line : lines) text += line + "\n";
    SCOPED_TRACE(seed);
    const std::string error = ErrorOf(text);
    if (!error.empty()) ++refused;
    ASSERT_TRUE(error.empty() || error.starts_with("drawing.dxf:")) << error;
  }
  // A reader that refused all, or none, would be no reader.
  EXPECT_GT(refused, kRounds / 10);
  EXPECT_LT(refused, kRounds * 9 / 10);
}

}  // namespace
}  // namespace hdiplot
