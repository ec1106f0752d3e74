// Where a drawing lands on the sheet.
#pragma once

#include "hdiplot/device/plot_device.h"
#include "hdiplot/geometry/transform.h"
#include "hdiplot/model/drawing.h"
#include "hdiplot/plot/extents.h"
#include "hdiplot/plot/plot_options.h"

namespace hdiplot {

// The printable area of the device. Host coordinates begin at its upper left corner.
struct Sheet {
  double width = 0;   // dots
  double height = 0;  // dots
  double dotsPerMillimetre = 1;
  // The height, with its fraction of a dot, by which the driver turns Y round: record y is this less host y.
  double mappedHeight = 0;
  // Whether the driver puts lines on whole dots of the record.
  bool wholeDots = true;
};

// The sheet that the device is set up for: its capabilities, and what they leave out from the driver's
// record. To be asked behind the page's start when the page brings a record of its own.
[[nodiscard]] Sheet MakeSheet(PlotDevice& device);

// What `options` ask for; for Orientation::kFit the way in which the drawing comes out larger, or with a
// fixed scale has more room. Portrait when there is nothing between them. Never kFit.
[[nodiscard]] Orientation BestOrientation(const DrawingPart& part, const PlotOptions& options,
                                          const Sheet& portrait, const Sheet& landscape);

// Whether the layout is plotted on the sheet that it was made for, and at its own size. Otherwise it is put
// on another one as a drawing is.
[[nodiscard]] bool HasOwnSheet(const Layout* layout, const PlotOptions& options);

// What is brought to the sheet, in units of the model or of the layout: the printable area of the layout's
// own sheet, or else what is plotted.
[[nodiscard]] Box PageExtents(const DrawingPart& part);

// The map from the layout's units, Y up, to dots, Y down, on its own sheet.
[[nodiscard]] Affine LayoutToDots(const Layout& layout, const Sheet& sheet);

// The map from drawing units, Y up, to dots, Y down. The middle of `extents` comes to the middle of the
// sheet, at the scale that the options ask for; else at the largest that fits, or at 1:1 when the drawing has
// no extent.
[[nodiscard]] Affine DrawingToDots(const Box& extents, double millimetresPerUnit, const PlotOptions& options,
                                   const Sheet& sheet);

}  // namespace hdiplot
