#include "hdiplot/plot/page_setup.h"

namespace hdiplot {

namespace {

// Indexes of the device's capabilities.
constexpr int32_t kPrintableWidth = 8;
constexpr int32_t kPrintableHeight = 10;
constexpr int32_t kDotsPerInchAcross = 88;

constexpr double kMillimetresPerInch = 25.4;

// The factor at which `extents` fill the sheet in one direction. Infinite when they are empty but for
// rounding noise.
double FittingScale(const Box& extents, const Sheet& sheet) {
  const double noise = kRoundingNoise * extents.Magnitude();
  const auto factor = [noise](double dots, double extent) { return dots / (extent > noise ? extent : 0); };
  return std::min(factor(sheet.width, extents.Width()), factor(sheet.height, extents.Height()));
}

// How a layout lies on its own sheet.
struct Placement {
  double millimetresPerUnit = 1;
  Vec2 origin;  // the layout's, in millimetres from the lower left corner of the printable area
};

// Millimetres.
Vec2 PrintableSize(const LayoutSheet& sheet) {
  return {sheet.width - sheet.left - sheet.right, sheet.height - sheet.top - sheet.bottom};
}

Placement PlacementOf(const DrawingPart& part) {
  const Layout& layout = *part.layout;
  Placement placement{layout.millimetresPerUnit, layout.origin};
  const Box area = PlottedArea(part);
  if (area.Empty()) return placement;
  const Vec2 printable = PrintableSize(*layout.sheet);
  const Vec2 size{area.Width(), area.Height()};
  double& scale = placement.millimetresPerUnit;
  if (layout.setup.isFitted && (size.x > 0 || size.y > 0))
    scale = std::min(printable.x / size.x, printable.y / size.y);
  placement.origin = placement.origin - area.low * scale;
  if (layout.setup.isCentred) placement.origin = (printable - size * scale) * 0.5 - area.low * scale;
  return placement;
}

}  // namespace

Sheet MakeSheet(PlotDevice& device) {
  Sheet sheet;
  // Margins wider than the paper give negative values; at least a dot remains.
  const auto dots = [&](int32_t index) {
    return std::max(static_cast<int32_t>(device.Make(call::GetCaps{index})), 1);
  };
  sheet.width = dots(kPrintableWidth);
  sheet.height = dots(kPrintableHeight);
  const uint32_t dotsPerInch = device.Make(call::GetCaps{kDotsPerInchAcross});
  sheet.dotsPerMillimetre = dotsPerInch / kMillimetresPerInch;
  // To be read after the queries, which update the record.
  const hdi::DriverDevMode& record = *device.Driver().GetDevModePointer();
  const int32_t height = record.paperHeight - record.marginTop - record.marginBottom;
  sheet.mappedHeight = height * static_cast<double>(dotsPerInch) / hdi::kTenthsPerInch;
  sheet.wholeDots = record.keepFractions == 0;
  return sheet;
}

Orientation BestOrientation(const DrawingPart& part, const PlotOptions& options, const Sheet& portrait,
                            const Sheet& landscape) {
  if (options.orientation != Orientation::kFit) return options.orientation;
  const Box extents = PageExtents(part);
  return FittingScale(extents, landscape) > FittingScale(extents, portrait) ? Orientation::kLandscape
                                                                            : Orientation::kPortrait;
}

bool HasOwnSheet(const Layout* layout, const PlotOptions& options) {
  const bool isAskedFor = !options.paper.name.empty() || options.paper.sizeMillimetres;
  return layout != nullptr && layout->sheet && !isAskedFor;
}

LayoutSheet PlottedSheet(const LayoutSheet& sheet, const PlotOptions& options) {
  LayoutSheet plotted = sheet;
  if (!options.printerMargins) plotted.left = plotted.top = plotted.right = plotted.bottom = 0;
  return plotted;
}

Box PlottedArea(const DrawingPart& part) {
  const PageSetup& setup = part.layout->setup;
  if (setup.area == PageSetup::Area::kBox) return setup.box;
  return setup.area == PageSetup::Area::kExtents ? part.extents : Box{};
}

Box PageExtents(const DrawingPart& part) {
  if (part.layout == nullptr || !part.layout->sheet) return part.extents;
  const Placement placement = PlacementOf(part);
  const double unit = 1 / placement.millimetresPerUnit;
  const Vec2 low = placement.origin * -unit;
  Box box;
  box.Add(low);
  box.Add(low + PrintableSize(*part.layout->sheet) * unit);
  return box;
}

Affine LayoutToDots(const DrawingPart& part, const PlotOptions& options, const Sheet& sheet) {
  const Placement placement = PlacementOf(part);
  const double scale = placement.millimetresPerUnit * sheet.dotsPerMillimetre;
  Vec2 origin = placement.origin;
  if (!options.printerMargins) origin = origin + Vec2{part.layout->sheet->left, part.layout->sheet->bottom};
  origin = origin * sheet.dotsPerMillimetre;
  return Affine::Translation({origin.x, sheet.mappedHeight - origin.y}) * Affine::Scaling(scale, -scale);
}

Affine DrawingToDots(const Box& extents, double millimetresPerUnit, const PlotOptions& options,
                     const Sheet& sheet) {
  const double trueSize = millimetresPerUnit * sheet.dotsPerMillimetre;
  const double fitting = FittingScale(extents, sheet);
  const double scale = options.scale            ? trueSize / *options.scale
                       : std::isfinite(fitting) ? fitting
                                                : trueSize;
  const Vec2 middle = extents.Empty() ? Vec2{} : Between(extents.low, extents.high, 0.5);
  return Affine::Translation({sheet.width / 2, sheet.height / 2}) * Affine::Scaling(scale, -scale) *
         Affine::Translation(middle * -1);
}

}  // namespace hdiplot
