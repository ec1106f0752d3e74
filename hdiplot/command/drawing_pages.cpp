#include "hdiplot/command/drawing_pages.h"

#include <fmt/format.h>

#include <algorithm>

#include "hdiplot/command/printing.h"
#include "hdiplot/system/names.h"

namespace hdiplot {

namespace {

constexpr const char* kModel = "model";
constexpr const char* kAllLayouts = "all";
constexpr const char* kSheets = "sheets";  // all layouts, or the model where there are none

bool IsEmpty(const Drawing& drawing, const Layout& layout) {
  bool isEmpty = true;
  ForEachEntity(drawing, layout, [&isEmpty](const Entity&) { isEmpty = false; });
  return isEmpty;
}

bool HasModel(const Drawing& drawing) {
  return std::ranges::any_of(drawing.entities, [](const Entity& e) { return !e.attributes.paperSpace; });
}

}  // namespace

std::vector<DrawingPage> PagesOf(const Drawing& drawing, const PlotOptions& options, FontBook& fonts) {
  const std::string asked = FoldedName(options.layout);
  const bool wantsModel = asked == FoldedName(kModel) || (asked.empty() && HasModel(drawing));
  const bool wantsSheets = asked.empty() || asked == FoldedName(kSheets);
  const bool wantsAll = wantsSheets || asked == FoldedName(kAllLayouts);
  std::vector<DrawingPage> pages;
  for (const Layout& layout : drawing.layouts) {
    const bool isWanted = wantsAll ? !IsEmpty(drawing, layout) : FoldedName(layout.name) == asked;
    if (wantsModel || !isWanted) continue;
    pages.push_back({MeasuredPart(drawing, options, fonts, &layout), HasOwnSheet(&layout, options)});
  }
  if (wantsModel || (wantsSheets && pages.empty())) pages = {{MeasuredPart(drawing, options, fonts)}};
  return pages;
}

std::string NoSuchLayout(const Drawing& drawing, const PlotOptions& options) {
  if (drawing.layouts.empty()) return drawing.name + ": has no layouts";
  if (FoldedName(options.layout) == FoldedName(kAllLayouts)) return drawing.name + ": all layouts are empty";
  return fmt::format("{}: has no layout \"{}\"; there are: {}", drawing.name, options.layout,
                     Listed(drawing.layouts, &Layout::name));
}

void ChooseOrientations(std::vector<DrawingPage>& pages, const PlotOptions& options, const PaperPlan& paper) {
  const Sheet portrait = paper.SheetFor(Orientation::kPortrait);
  const Sheet landscape = paper.SheetFor(Orientation::kLandscape);
  std::optional<Orientation> first;
  for (DrawingPage& page : pages) {
    if (page.hasOwnSheet) continue;
    page.orientation =
        paper.IsCustom() && first ? *first : BestOrientation(page.part, options, portrait, landscape);
    first = first.value_or(page.orientation);
  }
}

std::vector<std::optional<FieldSettings>> RecordChanges(const std::vector<DrawingPage>& pages,
                                                        const PlotOptions& options, const PaperPlan& paper) {
  const bool anyOwn = std::ranges::any_of(pages, &DrawingPage::hasOwnSheet);
  std::vector<std::optional<FieldSettings>> changes;
  for (const DrawingPage& page : pages) {
    if (page.hasOwnSheet) {
      changes.emplace_back(SheetChanges(PlottedSheet(*page.part.layout->sheet, options)));
    } else {
      // After a page with its own sheet the record has that sheet's paper, so all of it is set.
      changes.push_back(anyOwn ? paper.WholePageChanges(page.orientation)
                               : paper.PageChanges(page.orientation));
    }
  }
  return changes;
}

std::string PaperName(const DrawingPage& page, const PaperPlan& paper) {
  if (page.hasOwnSheet) {
    return fmt::format("{:.4g}x{:.4g}", page.part.layout->sheet->width, page.part.layout->sheet->height);
  }
  return paper.Name() + (page.orientation == Orientation::kLandscape ? " landscape" : " portrait");
}

std::map<std::string, uint64_t> SkippedOn(const DrawingPage& page) {
  std::map<std::string, uint64_t> skipped;
  if (page.part.layout != nullptr) skipped = page.part.layout->skipped;
  if (page.part.layout != nullptr && page.part.layout->viewports == 0) return skipped;
  for (const auto& [type, count] : page.part.drawing->skipped) skipped[type] += count;
  return skipped;
}

std::string NothingToPlot(const DrawingPage& page) {
  const Layout* layout = page.part.layout;
  std::map<std::string, uint64_t> there;  // as far as the drawing counts its entities by type
  for (const auto& [type, count] : page.part.drawing->types) {
    const uint64_t onPaper = layout != nullptr && layout->block == kActivePaper ? count.paper : 0;
    const uint64_t entities = layout == nullptr ? count.model : onPaper;
    if (entities > 0) there[type] = entities;
  }
  const std::string where =
      page.part.drawing->name + (layout == nullptr ? "" : fmt::format(", layout \"{}\"", layout->name));
  if (there.empty()) return where + ": there is nothing to plot";
  return fmt::format("{}: there is nothing to plot; it has {}", where, FormatCounts(there));
}

}  // namespace hdiplot
