// Plot styles: how a drawing's colours (CTB files) or the styles that it names (STB files) look on paper.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "hdiplot/device/plot_device.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

// What a plot style changes of an object; what it leaves is empty.
struct PlotStyle {
  std::optional<Rgb> color;
  bool isGrey = false;               // the colour, or the object's, as its grey
  int screening = 100;               // percent of the ink
  std::optional<int> lineWeight;     // hundredths of a millimetre
  std::optional<LineType> lineType;  // in millimetres on paper; without dashes: continuous
  std::optional<uint32_t> ends;      // of lines, as a pen's style
  std::optional<uint32_t> joins;
  std::vector<HatchPatternLine> fill;  // of solid fills, in millimetres; empty: solid

  // The plotted form of an object's colour.
  [[nodiscard]] Rgb Plotted(Rgb object) const;
};

struct PlotStyles {
  bool areNamed = false;
  std::array<PlotStyle, 256> byIndex;       // of colours, from 1
  std::map<std::string, PlotStyle> byName;  // by folded name
};

// The grey as bright as the colour.
[[nodiscard]] Rgb GreyOf(Rgb color);

// Reads a CTB or STB file. Throws FileError for one that cannot be read.
[[nodiscard]] PlotStyles ReadPlotStyles(const std::filesystem::path& file);

// The patterns of lines and fills that these files have numbers for.

// None for a number without a pattern, which leaves the object's own.
[[nodiscard]] std::optional<LineType> PlotLineType(int number);
// Empty for a solid fill, and for the object's own.
[[nodiscard]] std::vector<HatchPatternLine> PlotFill(int number);

}  // namespace hdiplot
