// What of a drawing is plotted on a page, and how large that is.
#pragma once

#include "hdiplot/geometry/transform.h"
#include "hdiplot/model/drawing.h"
#include "hdiplot/plot/plot_options.h"
#include "hdiplot/text/font_book.h"

namespace hdiplot {

// Refers to the drawing.
struct DrawingPart {
  const Drawing* drawing = nullptr;
  const Layout* layout = nullptr;  // of the drawing; null: its model
  // In units of the model, or of the layout, around all that DrawingWalk comes upon there, whatever the
  // file's header says: what ShapeMeter says of it.
  Box extents;
};

[[nodiscard]] DrawingPart MeasuredPart(const Drawing& drawing, const PlotOptions& options, FontBook& fonts,
                                       const Layout* layout = nullptr);

}  // namespace hdiplot
