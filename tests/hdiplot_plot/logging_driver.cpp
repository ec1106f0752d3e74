#include "tests/hdiplot_plot/logging_driver.h"

#include <algorithm>

namespace hdiplot {

namespace {

using hdi::HostDevice;
using hdi::HT_Double_Point;

std::vector<LoggedCall>& CallsOf(HostDevice* device) {
  return static_cast<LoggingDriver*>(device->driver)->calls;
}

int32_t Add(HostDevice* device, LoggedCall call) {
  CallsOf(device).push_back(std::move(call));
  return 1;
}

std::vector<std::vector<HT_Double_Point>> OneList(const HT_Double_Point* points, int32_t count) {
  return {{points, points + count}};
}

Rgb ColorOf(uint32_t word) {
  return {static_cast<uint8_t>(word), static_cast<uint8_t>(word >> 8), static_cast<uint8_t>(word >> 16)};
}

uint32_t LogGetCaps(HostDevice*, int32_t index) {
  return index == 8 ? 2000 : index == 10 ? 3000 : index == 88 || index == 90 ? 254 : 0;
}

int32_t LogPen(HostDevice* device, const hdi::EXTLOGPEN32* pen) {
  LoggedCall call{"SetPen", {}, {}, {}, {}};
  call.pen.style = pen->elpPenStyle;
  call.pen.width = pen->elpWidth;
  call.pen.color = ColorOf(pen->elpColor);
  // The entries run on behind the record's one.
  const auto* words = reinterpret_cast<const uint32_t*>(pen) + offsetof(hdi::EXTLOGPEN32, elpStyleEntry) / 4;
  call.pen.entries.assign(words, words + pen->elpNumEntries);
  return Add(device, std::move(call));
}

int32_t LogBrush(HostDevice* device, const hdi::LOGBRUSH* brush) {
  return Add(device, {"SetBrush", {}, {}, {}, ColorOf(brush->lbColor)});
}

int32_t LogFillMode(HostDevice* device, uint32_t mode) {
  return Add(device, {"SetFillMode", {}, {static_cast<double>(mode)}, {}, {}});
}

int32_t LogPolyline(HostDevice* device, const HT_Double_Point* points, int32_t count) {
  return Add(device, {"Polyline", OneList(points, count), {}, {}, {}});
}

int32_t LogPolyBezier(HostDevice* device, const HT_Double_Point* points, int32_t count) {
  return Add(device, {"PolyBezier", OneList(points, count), {}, {}, {}});
}

int32_t LogPolyPolygon(HostDevice* device, const HT_Double_Point* points, const uint32_t* counts,
                       int32_t polygons) {
  LoggedCall call{"PolyPolygon", {}, {}, {}, {}};
  for (int32_t i = 0; i < polygons; points += counts[i++])
    call.points.emplace_back(points, points + counts[i]);
  return Add(device, std::move(call));
}

int32_t LogArc(HostDevice* device, const HT_Double_Point* center, double a, double b, double c, double d,
               double e) {
  return Add(device, {"Arc", {{*center}}, {a, b, c, d, e}, {}, {}});
}

int32_t LogBeginPath(HostDevice* device) { return Add(device, {"BeginPath", {}, {}, {}, {}}); }

int32_t LogClip(HostDevice* device, const hdi::ClipPolygon* clip) {
  return Add(device, {"SetClip", OneList(clip->points, clip->count), {}, {}, {}});
}

}  // namespace

LoggingDriver::LoggingDriver() {
  record_.paperWidth = 2000;
  record_.paperHeight = 3000;
  const auto set = [this](hdi::Position position, auto* function) {
    table_.positions[static_cast<size_t>(position)] = reinterpret_cast<hdi::DeviceTable::Entry>(function);
  };
  set(hdi::Position::kGetCaps, LogGetCaps);
  set(hdi::Position::kSetPen, LogPen);
  set(hdi::Position::kSetBrush, LogBrush);
  set(hdi::Position::kSetFillMode, LogFillMode);
  set(hdi::Position::kPolyline, LogPolyline);
  set(hdi::Position::kPolyBezier, LogPolyBezier);
  set(hdi::Position::kPolyPolygon, LogPolyPolygon);
  set(hdi::Position::kArc, LogArc);
  set(hdi::Position::kBeginPath, LogBeginPath);
  set(hdi::Position::kSetClip, LogClip);
}

int32_t LoggingDriver::OpenDevice(HostDevice* device) {
  device->table = &table_;
  return 1;
}

std::vector<LoggedCall> PlotToLog(const Drawing& drawing, const PlotOptions& options) {
  LoggingDriver driver;
  PlotDevice device(driver);
  Progress progress(ProgressDisplay::kOff);
  PlotDrawing(drawing, options, MakeSheet(device), device, progress);
  return driver.calls;
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

std::vector<LoggedCall> PlotOnSheet(const Drawing& drawing, const PlotOptions& options) {
  // With the same options: a frozen or filtered layer 0 leaves no calls for the corners.
  const std::vector<LoggedCall> corners = PlotToLog(SheetDrawing(), options);
  std::vector<LoggedCall> calls = PlotToLog(drawing, options);
  calls.erase(calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(corners.size()));
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
