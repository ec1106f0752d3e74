// Papers: the device's list, and the driver's settings for the paper that the command line selects.
#pragma once

#include <string>
#include <vector>

#include "hdiplot/plot/page_setup.h"
#include "hdiplot/plot/plot_options.h"
#include "hdiplot/trace/trace.h"
#include "platform/border.h"

namespace hdiplot {

// The device's papers, in its order.
[[nodiscard]] std::vector<hdi::PaperSize> PapersOf(hdi::HT_Driver& driver);
[[nodiscard]] std::string NameOf(const hdi::PaperSize& paper);

// One paper for all pages of a job. A paper of the driver's list with its own margins lets each page choose
// its orientation. With the user's size or margins it becomes the driver's only custom paper, which has no
// orientation: the first page then chooses for all.
class PaperPlan {
 public:
  // Finds the paper in the driver's list by its name, in any case. Throws std::runtime_error when there is
  // none, or when the margins leave no room on the sheet.
  PaperPlan(hdi::HT_Driver& driver, const PlotOptions& options);

  [[nodiscard]] const std::string& Name() const { return name_; }
  [[nodiscard]] bool IsCustom() const { return isCustom_; }

  // The printable area in this orientation, in millimetres: only for comparing orientations.
  [[nodiscard]] Sheet SheetFor(Orientation orientation) const;

  // Adds the settings for a first page in this orientation to `job`.
  void AddTo(JobSettings& job, Orientation orientation) const;

  // The changes of the driver's record for a page in this orientation.
  [[nodiscard]] std::optional<FieldSettings> PageChanges(Orientation orientation) const;
  // The same for a page that follows one on another paper.
  [[nodiscard]] FieldSettings WholePageChanges(Orientation orientation) const;

 private:
  // In millimetres, as the page is viewed.
  struct Placed {
    double width;
    double height;
    Margins margins;
  };
  [[nodiscard]] Placed PlacedAs(Orientation orientation) const;

  std::string name_;
  int32_t id_ = 0;
  bool isCustom_ = false;
  double width_ = 0;  // millimetres, of the sheet in portrait
  double height_ = 0;
  Margins margins_;
};

// The changes of the driver's record for a page on this sheet, which need not be in the driver's list.
[[nodiscard]] FieldSettings SheetChanges(const LayoutSheet& sheet);

}  // namespace hdiplot
