// The sheet, and the map from a drawing to it.
#pragma once

#include "hdiplot/device/plot_device.h"
#include "hdiplot/geometry/transform.h"
#include "hdiplot/model/drawing.h"
#include "hdiplot/plot/extents.h"
#include "hdiplot/plot/plot_options.h"

namespace hdiplot {

// The printable area of the device. The origin of host coordinates is its upper left corner.
struct Sheet {
  double width = 0;   // dots
  double height = 0;  // dots
  double dotsPerMillimetre = 1;
  // The height with its fraction of a dot. The driver flips Y with it: record y is this less host y.
  double mappedHeight = 0;
  // Whether the driver rounds lines to whole dots of the record.
  bool wholeDots = true;
};

// The sheet that the device is set up for, from its capabilities and the driver's record. To be called after
// the page's start if the page has a record of its own.
[[nodiscard]] Sheet MakeSheet(PlotDevice& device);

// The orientation in the options. For Orientation::kFit the one in which the drawing is larger, or has more
// room at a fixed scale; portrait if they are equal. Never kFit.
[[nodiscard]] Orientation BestOrientation(const DrawingPart& part, const PlotOptions& options,
                                          const Sheet& portrait, const Sheet& landscape);

// Whether the layout is plotted on its own sheet at its own size. Otherwise it is placed like a model.
[[nodiscard]] bool HasOwnSheet(const Layout* layout, const PlotOptions& options);

// The layout's own sheet as the driver gets it: without margins, which are those of a plotter, unless the
// options ask for them.
[[nodiscard]] LayoutSheet PlottedSheet(const LayoutSheet& sheet, const PlotOptions& options);

// What of the layout is plotted on its own sheet, in its units. Empty: all of it.
[[nodiscard]] Box PlottedArea(const DrawingPart& part);

// The area that is mapped to the sheet, in units of the model or of the layout: the printable area of the
// layout's own sheet, or the extents.
[[nodiscard]] Box PageExtents(const DrawingPart& part);

// The map from the layout's units, Y up, to dots, Y down, on its own sheet. `part` has a layout with one.
[[nodiscard]] Affine LayoutToDots(const DrawingPart& part, const PlotOptions& options, const Sheet& sheet);

// The map from drawing units, Y up, to dots, Y down. Centres `extents` on the sheet at the scale in the
// options; by default at the largest scale that fits, or at 1:1 when the drawing has no extent.
[[nodiscard]] Affine DrawingToDots(const Box& extents, double millimetresPerUnit, const PlotOptions& options,
                                   const Sheet& sheet);

}  // namespace hdiplot
