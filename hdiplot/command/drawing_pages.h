// Which pages the drawings of a command line become: their models, or layouts of theirs.
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
  Orientation orientation = Orientation::kPortrait;  // of a page that has none, once it is chosen
};

// What `options` ask for; when they ask for nothing, the model, or where there is none all layouts. These are
// those that have entities: drawings often have sheets that nobody has ever opened. None when the drawing has
// no such layout.
[[nodiscard]] std::vector<DrawingPage> PagesOf(const Drawing& drawing, const PlotOptions& options,
                                               FontBook& fonts);

// What to tell the user about a drawing without pages.
[[nodiscard]] std::string NoSuchLayout(const Drawing& drawing, const PlotOptions& options);

void ChooseOrientations(std::vector<DrawingPage>& pages, const PlotOptions& options, const PaperPlan& paper);

// What each page has to change in the driver's record.
[[nodiscard]] std::vector<std::optional<FieldSettings>> RecordChanges(const std::vector<DrawingPage>& pages,
                                                                      const PaperPlan& paper);

// The page's paper for messages.
[[nodiscard]] std::string PaperName(const DrawingPage& page, const PaperPlan& paper);

// What is skipped in what is on the page.
[[nodiscard]] std::map<std::string, uint64_t> SkippedOn(const DrawingPage& page);

}  // namespace hdiplot
