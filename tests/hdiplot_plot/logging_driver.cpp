#include "tests/hdiplot_plot/logging_driver.h"

#include <algorithm>

#include "platform/unicode.h"

namespace hdiplot {

namespace {

using hdi::HostDevice;
using hdi::HT_Double_Point;

int32_t Add(HostDevice* device, LoggedCall call) {
  auto* driver = static_cast<LoggingDriver*>(device->driver);
  driver->course.push_back(call.name);
  driver->calls.push_back(std::move(call));
  return 1;
}

int32_t Note(HostDevice* device, std::string name, const char16_t* text = u"") {
  const std::string argument = hdi::ToUtf8(text);
  if (!argument.empty()) name += " " + argument;
  static_cast<LoggingDriver*>(device->driver)->course.push_back(name);
  return 1;
}

Rgb ColorOf(uint32_t word) {
  return {static_cast<uint8_t>(word), static_cast<uint8_t>(word >> 8), static_cast<uint8_t>(word >> 16)};
}

int32_t LogPen(HostDevice* device, const hdi::EXTLOGPEN32* pen) {
  // The entries run on behind the record's one.
  const auto* words = reinterpret_cast<const uint32_t*>(pen) + offsetof(hdi::EXTLOGPEN32, elpStyleEntry) / 4;
  const Pen own{pen->elpPenStyle, pen->elpWidth, ColorOf(pen->elpColor), {words, words + pen->elpNumEntries}};
  return Add(device, {"SetPen", {}, {}, own});
}

int32_t LogText(HostDevice* device, const hdi::LOGFONTW* font, const HT_Double_Point* position,
                const char16_t* text, int32_t count, const double* advances, double height, double oblique,
                double tracking, double width) {
  LoggedCall call{"Text", {{*position}}, {height, oblique, tracking, width}, {}, *font, {text, text + count},
                  {}};
  if (advances != nullptr) call.advances.assign(advances, advances + count);
  Add(device, std::move(call));
  const bool shows = static_cast<LoggingDriver*>(device->driver)->showsText;
  return shows && advances != nullptr && tracking == 1 ? 1 : 0;
}

}  // namespace

LoggingDriver::LoggingDriver() {
  record.paperWidth = 2000;
  record.paperHeight = 3000;
  Set(
      hdi::Position::kGetCaps, +[](HostDevice*, int32_t index) -> uint32_t {
        return index == 8 ? 2000 : index == 10 ? 3000 : index == 88 || index == 90 ? 254 : 0;
      });
  Set(hdi::Position::kSetPen, LogPen);
  Set(hdi::Position::kText, LogText);
  Set(
      hdi::Position::kSetLayer,
      +[](HostDevice* device, int64_t, const char16_t* name) { return Note(device, "Layer", name); });
  Set(
      hdi::Position::kSetAlpha,
      +[](HostDevice* device, uint32_t alpha) { return Note(device, "Alpha " + std::to_string(alpha)); });
  Set(
      hdi::Position::kBeginLink,
      +[](HostDevice* device, const char16_t* target) { return Note(device, "BeginLink", target); });
  Set(
      hdi::Position::kEndLink, +[](HostDevice* device) { return Note(device, "EndLink"); });
  Set(
      hdi::Position::kShxComment,
      +[](HostDevice* device, const char16_t* text, const int32_t* rect, uint32_t flags) {
        std::string name = "Comment";
        for (int i = 0; i < 4; ++i) name += " " + std::to_string(rect[i]);
        return Note(device, name + " " + std::to_string(flags), text);
      });
  Set(
      hdi::Position::kFillPath, +[](HostDevice* device) {
        return Add(device, {"FillPath", {}, {}, {}});
      });
  Set(
      hdi::Position::kBitmap, +[](HostDevice* device, const hdi::HostImageRecord* placed) {
        LoggedCall call{
            "Bitmap", {{{placed->originX, placed->originY}}}, {placed->scaleX, placed->scaleY}, {}};
        call.image = DescribeRaster(*placed->image);
        return Add(device, std::move(call));
      });
  Set(
      hdi::Position::kPolyPolygon,
      +[](HostDevice* device, const HT_Double_Point* points, const uint32_t* counts, int32_t polygons) {
        LoggedCall call{"PolyPolygon", {}, {}, {}};
        for (int32_t i = 0; i < polygons; points += counts[i++]) {
          call.points.emplace_back(points, points + counts[i]);
        }
        return Add(device, std::move(call));
      });
  Set(
      hdi::Position::kPolyline, +[](HostDevice* device, const HT_Double_Point* points, int32_t count) {
        return Add(device, {"Polyline", {{points, points + count}}, {}, {}});
      });
  Set(
      hdi::Position::kPolyBezier, +[](HostDevice* device, const HT_Double_Point* points, int32_t count) {
        return Add(device, {"PolyBezier", {{points, points + count}}, {}, {}});
      });
  Set(
      hdi::Position::kArc, +[](HostDevice* device, const HT_Double_Point* center, double a, double b,
                               double c, double d, double e) {
        return Add(device, {"Arc", {{*center}}, {a, b, c, d, e}, {}});
      });
  Set(
      hdi::Position::kSetClip, +[](HostDevice* device, const hdi::ClipPolygon* clip) {
        return Add(device, {"SetClip", {{clip->points, clip->points + clip->count}}, {}, {}});
      });
}

LoggingDriver PlotThrough(const Drawing& drawing, const PlotOptions& options, bool showsText,
                          const Layout* layout) {
  LoggingDriver driver;
  driver.showsText = showsText;
  FontBook fonts;
  ImageBook images;
  PlotDevice device(driver);
  Progress progress(ProgressDisplay::kOff);
  const DrawingPart part = MeasuredPart(drawing, options, fonts, layout);
  PlotDrawing(part, options, MakeSheet(device), fonts, images, device, progress);
  return driver;
}

std::vector<LoggedCall> PlotToLog(const Drawing& drawing, const PlotOptions& options, bool showsText) {
  return PlotThrough(drawing, options, showsText).calls;
}

Drawing SheetDrawing() {
  Drawing drawing;
  drawing.millimetresPerUnit = 0.1;
  drawing.entities = {Thing(PointEntity{{0, 0}}), Thing(PointEntity{{2000, 3000}})};
  return drawing;
}

PlotOptions OneToOne() {
  PlotOptions options;
  options.scale = 1;
  return options;
}

std::vector<LoggedCall> PlotOnSheet(const Drawing& drawing, const PlotOptions& options, bool showsText) {
  // With the same options: a frozen or filtered layer 0 leaves no calls for the corners.
  const std::vector<LoggedCall> corners = PlotToLog(SheetDrawing(), options);
  std::vector<LoggedCall> calls = PlotToLog(drawing, options, showsText);
  const auto first =
      std::ranges::find_if(calls, [](const LoggedCall& call) { return call.name != "SetClip"; });
  calls.erase(calls.begin(), first + static_cast<std::ptrdiff_t>(corners.size()));
  return calls;
}

std::vector<LoggedCall> Named(const std::vector<LoggedCall>& calls, const std::string& name) {
  std::vector<LoggedCall> found;
  std::copy_if(calls.begin(), calls.end(), std::back_inserter(found),
               [&](const LoggedCall& call) { return call.name == name; });
  return found;
}

Entity Thing(Shape shape, const std::string& layer) {
  Entity entity;
  entity.attributes.layer = layer;
  entity.shape = std::move(shape);
  return entity;
}

}  // namespace hdiplot
