// The lines of a hatch pattern, clipped to the boundary of the hatch.
#pragma once

#include <cstdint>
#include <vector>

#include "hdiplot/model/drawing.h"
#include "hdiplot/plot/boundaries.h"

namespace hdiplot {

// Bounds the number of lines. Where lines are closer than `closestLines`, or a family has more than
// `mostPieces` pieces, only every n-th line is drawn. Dashes whose pattern is shorter than `shortestPattern`
// become continuous lines.
struct PatternLimits {
  double closestLines = 0;  // drawing units, like the next
  double shortestPattern = 0;
  uint64_t mostPieces = 400'000;
};

struct PatternPiece {  // a dash; a dot when both are the same
  Vec2 from;
  Vec2 to;
};

// Clips families of lines to one boundary by the even-odd rule. Reuses its memory for each family.
class PatternCutter {
 public:
  // Keeps a reference to `rings`. All in drawing units.
  PatternCutter(const std::vector<Ring>& rings, const PatternLimits& limits)
      : rings_(rings), limits_(limits) {}

  // The pieces of `family` within the boundary, line by line; valid until the next call.
  const std::vector<PatternPiece>& Cut(const HatchPatternLine& family);

 private:
  struct Crossing {  // of the boundary and line number `line`
    int64_t line;
    double along;
  };

  // The coordinates of a family, along its lines and across them.
  struct Axes {
    Vec2 direction;
    Vec2 origin;
    double spacing = 0;  // across, from one line to the next; above 0
    double shift = 0;    // along, from one line to the next
    [[nodiscard]] double Along(Vec2 p) const { return Dot(p - origin, direction); }
    [[nodiscard]] double Across(Vec2 p) const { return Cross(direction, p - origin); }
    [[nodiscard]] Vec2 At(int64_t line, double along) const {
      return origin + direction * along + TurnedLeft(direction) * (static_cast<double>(line) * spacing);
    }
  };

  [[nodiscard]] static Axes AxesOf(const HatchPatternLine& family);
  [[nodiscard]] int64_t LineStep(const Axes& axes) const;
  void FindCrossings(const Axes& axes, int64_t step);
  void Thin(const std::vector<double>& dashes, double period, int64_t step);
  void CutLine(const Axes& axes, const std::vector<double>& dashes, double period, int64_t line, double from,
               double to);

  const std::vector<Ring>& rings_;
  PatternLimits limits_;
  std::vector<Crossing> crossings_;
  std::vector<PatternPiece> pieces_;
};

}  // namespace hdiplot
