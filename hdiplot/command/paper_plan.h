// From the paper that the command line asks for to the driver's settings.
#pragma once

#include <string>

#include "hdiplot/plot/page_setup.h"
#include "hdiplot/plot/plot_options.h"
#include "hdiplot/trace/trace.h"
#include "platform/border.h"

namespace hdiplot {

// One paper for all pages of a job. Without margins of the user's own it is one of the driver's list, and
// each page chooses its orientation. A size or margins of the user's make it the driver's custom paper, of
// which there is one and which knows no orientation: then the first page chooses for all.
class PaperPlan {
 public:
  // Looks the paper up in the driver's list. Throws std::runtime_error when there is none of this name, or
  // when the margins leave nothing of the sheet.
  PaperPlan(hdi::HT_Driver& driver, const PlotOptions& options);

  [[nodiscard]] const std::string& Name() const { return name_; }
  [[nodiscard]] bool IsCustom() const { return isCustom_; }

  // The printable area of a page that is held so; enough of it to compare orientations.
  [[nodiscard]] Sheet SheetFor(Orientation orientation) const;

  // Adds what the job needs for its first page, held so, to `job`.
  void AddTo(JobSettings& job, Orientation orientation) const;

  // What a page must change in the record to be held so.
  [[nodiscard]] std::optional<FieldSettings> PageChanges(Orientation orientation) const;
  // The same for a page behind one of another paper.
  [[nodiscard]] FieldSettings WholePageChanges(Orientation orientation) const;

 private:
  // Millimetres, as the page is seen.
  struct Placed {
    double width;
    double height;
    Margins margins;
  };
  [[nodiscard]] Placed PlacedAs(Orientation orientation) const;

  std::string name_;
  int32_t id_ = 0;
  bool isCustom_ = false;
  double width_ = 0;  // millimetres, of the sheet held upright
  double height_ = 0;
  Margins margins_;
};

// What a page must change in the record to be on that sheet, whatever papers the driver lists.
[[nodiscard]] FieldSettings SheetChanges(const LayoutSheet& sheet);

}  // namespace hdiplot
