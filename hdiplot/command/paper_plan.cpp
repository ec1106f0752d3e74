#include "hdiplot/command/paper_plan.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <stdexcept>

#include "hdiplot/command/printing.h"
#include "hdiplot/system/ascii_case.h"
#include "platform/unicode.h"

namespace hdiplot {

namespace {

constexpr const char* kDefaultPaper = "A4";
constexpr int32_t kCustomPaperId = 0;
// The number of no paper: the driver then takes the sheet's size and margins from the record.
constexpr int32_t kUnlistedPaperId = -1;
constexpr double kTenthsPerMillimetre = 10;
// Around a sheet of the user's size, in millimetres; at most a tenth of the shorter side.
constexpr double kDefaultMargin = 5;

// The capability that returns whole PaperSize records.
constexpr uint16_t kPaperRecords = 19;

const hdi::PaperSize& RequirePaper(const std::vector<hdi::PaperSize>& papers, const std::string& name) {
  const auto found = std::ranges::find_if(
      papers, [&name](const hdi::PaperSize& paper) { return EqualWithoutCase(NameOf(paper), name); });
  if (found != papers.end()) return *found;
  throw std::runtime_error("the device has no paper \"" + name + "\"; there are: " + Listed(papers, NameOf));
}

double Tenths(double millimetres) { return std::round(millimetres * kTenthsPerMillimetre); }

int16_t OrientationCode(Orientation orientation) {
  return orientation == Orientation::kLandscape ? hdi::kOrientationLandscape : hdi::kOrientationPortrait;
}

}  // namespace

std::vector<hdi::PaperSize> PapersOf(hdi::HT_Driver& driver) {
  hdi::DriverDevMode* record = driver.GetDevModePointer();
  const int32_t count = driver.DeviceCapabilities(kPaperRecords, nullptr, record);
  if (count < 1) return {};
  std::vector<hdi::PaperSize> papers(static_cast<size_t>(count));
  driver.DeviceCapabilities(kPaperRecords, reinterpret_cast<uint8_t*>(papers.data()), record);
  return papers;
}

std::string NameOf(const hdi::PaperSize& paper) {
  const std::u16string_view units(paper.name, std::size(paper.name));
  return hdi::ToUtf8(units.substr(0, units.find(u'\0')));
}

PaperPlan::PaperPlan(hdi::HT_Driver& driver, const PlotOptions& options)
    : isCustom_(options.paper.sizeMillimetres || options.margins) {
  if (const auto& size = options.paper.sizeMillimetres) {
    width_ = std::min(size->first, size->second);
    height_ = std::max(size->first, size->second);
    const double margin = std::min(kDefaultMargin, width_ / 10);
    margins_ = {margin, margin, margin, margin};
    name_ = fmt::format("{}x{}", size->first, size->second);
  } else {
    const auto papers = PapersOf(driver);
    const hdi::PaperSize& paper =
        RequirePaper(papers, options.paper.name.empty() ? kDefaultPaper : options.paper.name);
    name_ = NameOf(paper);
    id_ = paper.id;
    width_ = paper.width / kTenthsPerMillimetre;
    height_ = paper.height / kTenthsPerMillimetre;
    margins_ = {paper.left / kTenthsPerMillimetre, paper.top / kTenthsPerMillimetre,
                paper.right / kTenthsPerMillimetre, paper.bottom / kTenthsPerMillimetre};
  }
  if (options.margins) margins_ = *options.margins;
  for (const Orientation orientation : {Orientation::kPortrait, Orientation::kLandscape}) {
    const Sheet sheet = SheetFor(orientation);
    const bool isPossible = options.orientation == Orientation::kFit || options.orientation == orientation;
    if (isPossible && (sheet.width < 1 || sheet.height < 1)) {
      throw std::runtime_error("the margins leave no room on the paper " + name_);
    }
  }
}

PaperPlan::Placed PaperPlan::PlacedAs(Orientation orientation) const {
  if (orientation == Orientation::kPortrait) return {width_, height_, margins_};
  // The driver rotates a listed paper by a quarter turn, margins included. The user's own margins are those
  // of the page as it is viewed.
  if (isCustom_) return {height_, width_, margins_};
  return {height_, width_, {margins_.top, margins_.right, margins_.bottom, margins_.left}};
}

Sheet PaperPlan::SheetFor(Orientation orientation) const {
  const Placed placed = PlacedAs(orientation);
  Sheet sheet;
  sheet.width = placed.width - placed.margins.left - placed.margins.right;
  sheet.height = placed.height - placed.margins.top - placed.margins.bottom;
  return sheet;
}

void PaperPlan::AddTo(JobSettings& job, Orientation orientation) const {
  job.devMode.push_back(DevModeSetting("dmPaperSize", isCustom_ ? kCustomPaperId : id_));
  if (!isCustom_) {
    job.devMode.push_back(DevModeSetting("dmOrientation", OrientationCode(orientation)));
    return;
  }
  // The driver takes the custom paper's size unchanged but its margins rotated by a quarter turn: its top
  // becomes the page's left, its right the top, its bottom the right and its left the bottom.
  const Placed placed = PlacedAs(orientation);
  CustomPaper& paper = job.customPaper.emplace();
  paper.name = hdi::ToUtf16(name_);
  paper.width = Tenths(placed.width);
  paper.height = Tenths(placed.height);
  paper.top = Tenths(placed.margins.left);
  paper.right = Tenths(placed.margins.top);
  paper.bottom = Tenths(placed.margins.right);
  paper.left = Tenths(placed.margins.bottom);
}

std::optional<FieldSettings> PaperPlan::PageChanges(Orientation orientation) const {
  if (isCustom_) return std::nullopt;
  return FieldSettings{DevModeSetting("dmOrientation", OrientationCode(orientation))};
}

FieldSettings PaperPlan::WholePageChanges(Orientation orientation) const {
  const auto [width, height, margins] = PlacedAs(orientation);
  return SheetChanges({width, height, margins.left, margins.top, margins.right, margins.bottom});
}

FieldSettings SheetChanges(const LayoutSheet& sheet) {
  const auto tenths = [](std::string_view name, double millimetres) {
    return DevModeSetting(name, static_cast<int64_t>(Tenths(millimetres)));
  };
  return {DevModeSetting("dmPaperSize", kUnlistedPaperId),
          tenths("paperWidth", sheet.width),
          tenths("paperHeight", sheet.height),
          tenths("marginLeft", sheet.left),
          tenths("marginTop", sheet.top),
          tenths("marginRight", sheet.right),
          tenths("marginBottom", sheet.bottom)};
}

}  // namespace hdiplot
