// Printing what drawings contain, and which papers the device has.
#include <fmt/format.h>

#include <map>
#include <string>

#include "hdiplot/command/drawing_input.h"
#include "hdiplot/command/options.h"
#include "hdiplot/command/paper_plan.h"
#include "hdiplot/command/printing.h"
#include "hdiplot/device/module.h"
#include "platform/unicode.h"

namespace hdiplot {

namespace {

std::string StateOf(const Layer& layer) {
  constexpr double kPercent = 100;
  std::string state = layer.off ? "off" : "on";
  if (layer.frozen) state += ", frozen";
  if (!layer.plottable) state += ", does not plot";
  if (layer.alpha < 255) state += fmt::format(", {:.0f}% transparent", kPercent * (255 - layer.alpha) / 255);
  return state;
}

void PrintSpace(const char* name, const Drawing& drawing, uint64_t EntityCount::*space) {
  std::map<std::string, uint64_t> counts;
  for (const auto& [type, count] : drawing.types) {
    if (count.*space > 0) counts[type] = count.*space;
  }
  PrintLine(stdout, fmt::format("  {}: {}", name, counts.empty() ? "empty" : FormatCounts(counts)));
}

// One indented line: a name in a column, then its text.
void PrintRow(const std::string& name, const std::string& text) {
  PrintLine(stdout, fmt::format("    {:<24} {}", name, text));
}

void PrintLayout(const Layout& layout) {
  std::string what = "no paper";
  if (layout.sheet) what = fmt::format("{:.6g} x {:.6g} mm", layout.sheet->width, layout.sheet->height);
  what += fmt::format(", {} viewport{}", layout.viewports, layout.viewports == 1 ? "" : "s");
  PrintRow(layout.name, what);
}

void PrintDrawing(const Drawing& drawing) {
  PrintLine(stdout, drawing.name);
  PrintSpace("model space", drawing, &EntityCount::model);
  PrintSpace("paper space", drawing, &EntityCount::paper);
  if (!drawing.layouts.empty()) PrintLine(stdout, "  layouts:");
  for (const Layout& layout : drawing.layouts) PrintLayout(layout);
  PrintLine(stdout, "  layers:");
  for (const auto& [folded, layer] : LayersOf({&drawing, 1})) PrintRow(layer.name, StateOf(layer.layer));
}

}  // namespace

ExitStatus ListDrawings(const CommandLine& line) {
  Progress progress(ProgressFor(line.verbosity));
  size_t listed = 0;
  size_t complete = 0;
  for (const auto& file : line.inputs) {
    const auto drawing = ReadOrReport(file, line, progress);
    if (!drawing) continue;
    progress.Finish();
    PrintDrawing(*drawing);
    ++listed;
    if (drawing->losses.empty()) ++complete;
  }
  if (listed == 0) return ExitStatus::kNothingDone;
  return complete < line.inputs.size() ? ExitStatus::kPartlyDone : ExitStatus::kDone;
}

ExitStatus ListPapers(const CommandLine& line) {
  const Module module(line.module);
  for (const hdi::PaperSize& paper : PapersOf(module.Driver(hdi::ToUtf16(line.device)))) {
    PrintLine(stdout,
              fmt::format("{:<20} {} x {} mm", NameOf(paper), paper.width / 10.0, paper.height / 10.0));
  }
  return ExitStatus::kDone;
}

}  // namespace hdiplot
