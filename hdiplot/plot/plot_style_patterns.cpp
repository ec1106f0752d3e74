// Patterns of plot styles, in millimetres. The line types are those of ISO 128-20 for lines of 0.25 mm, and
// others of other dashes.
#include <numbers>

#include "hdiplot/plot/plot_styles.h"

namespace hdiplot {

std::optional<LineType> PlotLineType(int number) {
  static const std::array<std::vector<double>, 31> kDashes{{
      {},
      {2.5, -1.5},
      {0, -1},
      {3, -1, 0, -1},
      {1.25, -1.25},
      {2.5, -1.25},
      {5, -1.25},
      {1.25, -2.5},
      {2.5, -2.5},
      {5, -2.5},
      {5, -1.25, 2.5, -1.25},
      {2.5, -1.25, 1.25, -1.25, 1.25, -1.25},
      {5, -1.25, 1.25, -1.25},
      {5, -1.25, 0, -1.25, 0, -1.25},
      {5, -1.25, 0, -1.25},
      {2.5, -1.25, 0, -1.25, 1.25, -1.25, 0, -1.25},
      {0, -2.5},
      {3, -0.75},
      {3, -4.5},
      {6, -0.75, 0, -0.75},
      {6, -0.75, 0, -0.75, 0, -0.75},
      {6, -0.75, 0, -0.75, 0, -0.75, 0, -0.75},
      {0, -0.75},
      {6, -0.75, 1.5, -0.75},
      {6, -0.75, 1.5, -0.75, 1.5, -0.75},
      {3, -0.75, 0, -0.75},
      {3, -0.75, 3, -0.75, 0, -0.75},
      {3, -0.75, 0, -0.75, 0, -0.75},
      {3, -0.75, 3, -0.75, 0, -0.75, 0, -0.75},
      {3, -0.75, 0, -0.75, 0, -0.75, 0, -0.75},
      {3, -0.75, 3, -0.75, 0, -0.75, 0, -0.75, 0, -0.75},
  }};
  if (number < 0 || static_cast<size_t>(number) >= kDashes.size()) return std::nullopt;
  LineType lineType;
  lineType.dashes = kDashes[static_cast<size_t>(number)];
  return lineType;
}

std::vector<HatchPatternLine> PlotFill(int number) {
  constexpr double kApart = 1;
  constexpr double kEighth = std::numbers::pi / 4;
  const auto lines = [](double angle) {
    return HatchPatternLine{angle, {}, TurnedLeft(Direction(angle)) * kApart, {}};
  };
  switch (number) {
    case 65: {  // checkerboard: short dashes in rows that alternate
      HatchPatternLine even{0, {}, {kApart, kApart}, {kApart, -kApart}};
      return {even};
    }
    case 66:  // crosses
      return {lines(0), lines(2 * kEighth)};
    case 67:  // diamonds
      return {lines(kEighth), lines(3 * kEighth)};
    case 68:  // horizontal
      return {lines(0)};
    case 69:  // to the left
      return {lines(3 * kEighth)};
    case 70:  // to the right
      return {lines(kEighth)};
    case 71:  // dots
      return {{0, {}, {0, kApart}, {0, -kApart}}};
    case 72:  // vertical
      return {lines(2 * kEighth)};
    default:
      return {};
  }
}

}  // namespace hdiplot
