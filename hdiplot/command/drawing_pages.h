// The pages of a drawing: its model, or layouts.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "hdiplot/command/paper_plan.h"
#include "hdiplot/plot/extents.h"
#include "hdiplot/text/font_book.h"

namespace hdiplot {

struct DrawingPage {
  DrawingPart part;
  bool hasOwnSheet = false;
  Orientation orientation = Orientation::kPortrait;  // of a page without, after ChooseOrientations
};

// The pages that `options` select. Default: the model, or every layout with entities if the model is empty.
// None when the drawing has no such layout.
[[nodiscard]] std::vector<DrawingPage> PagesOf(const Drawing& drawing, const PlotOptions& options,
                                               FontBook& fonts);

// The message about a drawing without pages.
[[nodiscard]] std::string NoSuchLayout(const Drawing& drawing, const PlotOptions& options);

// Chooses the orientation of each page without a sheet of its own.
void ChooseOrientations(std::vector<DrawingPage>& pages, const PlotOptions& options, const PaperPlan& paper);

// The changes of the driver's record for each page.
[[nodiscard]] std::vector<std::optional<FieldSettings>> RecordChanges(const std::vector<DrawingPage>& pages,
                                                                      const PlotOptions& options,
                                                                      const PaperPlan& paper);

// The page's paper for messages.
[[nodiscard]] std::string PaperName(const DrawingPage& page, const PaperPlan& paper);

// What the reader skipped of what the page shows, by type.
[[nodiscard]] std::map<std::string, uint64_t> SkippedOn(const DrawingPage& page);

// The message for a page without anything to plot: what the drawing has in its place.
[[nodiscard]] std::string NothingToPlot(const DrawingPage& page);

}  // namespace hdiplot
