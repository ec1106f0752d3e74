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

// What a plot lacks, beyond what the options exclude.
struct LeftOut {
  UnwalkedInserts inserts;
  uint64_t tooFarOff =
      0;  // shapes with a part that is not plottable: too far off the sheet or without a size
};

// In millimetres on paper.
struct CutPage {
  double width = 0;  // of the drawing
  double height = 0;
  double seenWidth = 0;  // of the sheet within its margins
  double seenHeight = 0;
};

struct PlottedPage {
  // Of the drawing, or of the model in each viewport. None when nothing is plotted.
  std::vector<double> dotsPerUnit;
  LeftOut leftOut;
  std::optional<CutPage> cut;  // of a drawing that is larger than the sheet at the scale of the options
};

// Makes the calls that draw `part` on `sheet`; the caller starts and ends the page. Shows the part's entities
// as progress. Draws in the order of the file.
PlottedPage PlotDrawing(const DrawingPart& part, const PlotOptions& options, const Sheet& sheet,
                        FontBook& fonts, ImageBook& images, PlotDevice& device, Progress& progress);

}  // namespace hdiplot
