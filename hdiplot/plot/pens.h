// The device's pens for strokes and line types.
#pragma once

#include <cstdint>
#include <vector>

#include "hdiplot/device/plot_device.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

// The caps and joins of a pen, as bits of its style.
struct LineEnds {
  uint32_t caps;
  uint32_t joins;
  bool operator==(const LineEnds&) const = default;

  static const LineEnds kRound;  // both round
  static const LineEnds kFlat;   // flat caps and mitered joins
};
inline constexpr LineEnds LineEnds::kRound{hdi::kPenCapRound, hdi::kPenJoinRound};
inline constexpr LineEnds LineEnds::kFlat{hdi::kPenCapFlat, hdi::kPenJoinMiter};

struct Stroke {
  Rgb color;
  uint32_t width = 1;  // dots
  LineEnds ends = LineEnds::kRound;
  const LineType* lineType = nullptr;  // null: continuous
  double lineTypeScale = 1;            // dots a unit of the line type
  bool operator==(const Stroke&) const = default;
};

// The nearest whole number of dots, at least 1.
[[nodiscard]] uint32_t PenWidth(double dots);

[[nodiscard]] Pen PenOf(const Stroke& stroke);

// A pattern shorter than this, in dots, becomes a solid line: its dashes would not be discernible.
inline constexpr double kShortestPattern = 6;

// The dash of a line type that a pen's pattern starts with: the first one behind a gap, or behind none. 0 for
// a line type without gaps or without dashes.
[[nodiscard]] size_t FirstDash(const std::vector<double>& dashes);

// In dots, as a pen has it. 0 for a continuous line.
[[nodiscard]] double PatternLength(const Stroke& stroke);

// The entries of a user-style pen for a line type's `dashes` (positive dash, negative gap, 0 dot) at `scale`
// dots a unit: dash, gap, dash, gap. A pattern that starts with a gap is rotated to its first dash, and
// adjacent elements of one kind are joined. Dashes are at least `shortestDash` dots, gaps at least one;
// rounding preserves the length of the whole pattern, not of each element. Empty for a solid line: no gaps,
// no dashes, a length that is not finite or below kShortestPattern.
[[nodiscard]] std::vector<uint32_t> PenDashes(const std::vector<double>& dashes, double scale,
                                              uint32_t shortestDash);

}  // namespace hdiplot
