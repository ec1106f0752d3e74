// How large is what will be plotted?
#pragma once

#include "host/hdiplot/plot/transform.h"
#include "host/hdiplot/plot_options.h"
#include "host/hdiplot/text/font_book.h"

namespace hdiplot {

// The box in units of the model, or of the layout, around all that DrawingWalk comes upon there, whatever the
// file's header says: exact for lines, arcs and splines, texts as high as their fonts, with the widths of
// polylines and without line weights and point symbols.
[[nodiscard]] Box PlottedExtents(const Drawing& drawing, const PlotOptions& options, FontBook& fonts,
                                 const Layout* layout = nullptr);

}  // namespace hdiplot
