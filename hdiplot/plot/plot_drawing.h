// Plots a drawing onto one page.
#pragma once

#include "hdiplot/device/plot_device.h"
#include "hdiplot/image/image_book.h"
#include "hdiplot/model/drawing.h"
#include "hdiplot/plot/page_setup.h"
#include "hdiplot/plot/plot_options.h"
#include "hdiplot/plot/walk.h"
#include "hdiplot/system/progress.h"
#include "hdiplot/text/font_book.h"

namespace hdiplot {

// What has been left out of a plot, beyond what the options ask for.
struct LeftOut {
  UnwalkedInserts inserts;
  uint64_t tooFarOff =
      0;  // shapes that a part is missing of, as it lies absurdly far off the sheet or has no size
};

struct PlottedPage {
  // Of the drawing; of the model in each viewport where there are some. None when there is nothing in it.
  std::vector<double> dotsPerUnit;
  LeftOut leftOut;
};

// Makes the calls that draw `part` on `sheet`, between the page's start and its end, which are the caller's.
// Shows the part's entities as progress. The order of the file is the order of drawing.
PlottedPage PlotDrawing(const DrawingPart& part, const PlotOptions& options, const Sheet& sheet,
                        FontBook& fonts, ImageBook& images, PlotDevice& device, Progress& progress);

}  // namespace hdiplot
