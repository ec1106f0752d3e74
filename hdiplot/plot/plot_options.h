// The settings of a drawing's plot, in the user's units. Traces have their own.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "hdiplot/device/plot_device.h"

namespace hdiplot {

struct PlotStyles;  // plot_styles.h

struct PaperChoice {
  std::string name;  // in the driver's paper list, case-insensitive; empty: A4
  std::optional<std::pair<double, double>> sizeMillimetres;  // width and height; overrides the name
};

enum class Orientation { kFit, kLandscape, kPortrait };

struct Margins {  // millimetres
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;
};

struct PlotOptions {
  PaperChoice paper;
  Orientation orientation = Orientation::kFit;
  std::optional<Margins> margins;  // none: the paper's own
  std::optional<double> scale;     // N of 1:N, drawing millimetres per millimetre of paper; none: fit
  std::string layout;              // "model", "all", or a layout's name; empty: see PagesOf
  int dpi = 600;
  bool keepFractions = false;  // of dots, in coordinates
  bool monochrome = false;
  bool grey = false;
  std::shared_ptr<const PlotStyles> plotStyles;  // null: none
  bool printerMargins = false;                   // layouts are cut at the margins that they name
  std::optional<Rgb> background;
  std::vector<std::string> layers;      // wildcards * and ?, case-insensitive; empty: every layer
  std::vector<std::string> skipLayers;  // the same; overrides `layers`
  std::optional<std::filesystem::path> fontMap;
  bool textAsGeometry = false;
  bool keepLayers = true;       // the PDF has the drawing's layers
  bool keepLinks = true;        // of the drawing's entities
  bool strokeComments = false;  // stroked texts have comments
};

}  // namespace hdiplot
