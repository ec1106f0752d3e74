// From a line type of the drawing to the dashes of a pen.
#pragma once

#include <cstdint>
#include <vector>

namespace hdiplot {

// A pattern that takes up fewer dots than this is drawn as a solid line: its dashes could not be told apart.
inline constexpr double kShortestPattern = 6;

// The entries of a user-style pen for a line type's `dashes` (positive dash, negative gap, 0 dot), each
// `scale` dots a unit long: dash, gap, dash, gap, from a dash on. A pattern that begins with a gap is turned
// round to its first dash, and neighbours of one kind become one. Dashes are at least `shortestDash` dots,
// gaps at least one; the pattern's length is kept as a whole, not element by element. Empty for a solid line,
// also when the pattern has no gaps, no dashes, a length that is not finite or one below kShortestPattern.
[[nodiscard]] std::vector<uint32_t> PenDashes(const std::vector<double>& dashes, double scale,
                                              uint32_t shortestDash);

}  // namespace hdiplot
