// Telling what is in drawings, without the driver.
#include <fmt/format.h>

#include <map>
#include <string>
#include <utility>

#include "hdiplot/command/drawing_input.h"
#include "hdiplot/command/plot_commands.h"
#include "hdiplot/command/printing.h"
#include "hdiplot/command/report.h"
#include "hdiplot/system/names.h"

namespace hdiplot {

namespace {

// By folded name, sorted; a name as the drawing has it first. Layers need no entry in its table.
using LayersByName = std::map<std::string, std::pair<std::string, Layer>>;

LayersByName LayersOf(const Drawing& drawing) {
  LayersByName layers;
  for (const auto& [name, layer] : drawing.layers) layers.try_emplace(FoldedName(name), name, layer);
  const std::string* last = nullptr;  // entities come in runs of one layer
  const auto addAll = [&](const Entities& entities) {
    for (const Entity& entity : entities) {
      const std::string& name = entity.attributes.layer;
      if (last == nullptr || *last != name) layers.try_emplace(FoldedName(name), name, Layer());
      last = &name;
    }
  };
  for (const auto& [name, block] : drawing.blocks) addAll(block.entities);
  addAll(drawing.entities);
  return layers;
}

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

void PrintLayout(const Layout& layout) {
  std::string what = "no paper";
  if (layout.sheet) what = fmt::format("{:.6g} x {:.6g} mm", layout.sheet->width, layout.sheet->height);
  what += fmt::format(", {} viewport{}", layout.viewports, layout.viewports == 1 ? "" : "s");
  PrintLine(stdout, fmt::format("    {:<24} {}", layout.name, what));
}

void PrintDrawing(const Drawing& drawing) {
  PrintLine(stdout, drawing.name);
  PrintSpace("model space", drawing, &EntityCount::model);
  PrintSpace("paper space", drawing, &EntityCount::paper);
  if (!drawing.layouts.empty()) PrintLine(stdout, "  layouts:");
  for (const Layout& layout : drawing.layouts) PrintLayout(layout);
  PrintLine(stdout, "  layers:");
  for (const auto& [folded, layer] : LayersOf(drawing)) {
    PrintLine(stdout, fmt::format("    {:<24} {}", layer.first, StateOf(layer.second)));
  }
}

}  // namespace

ExitStatus ListDrawings(const CommandLine& line) {
  Progress progress(ProgressFor(line.verbosity));
  size_t listed = 0;
  size_t whole = 0;
  for (const auto& file : line.inputs) {
    const auto drawing = ReadOrReport(file, line.strictness, progress);
    if (!drawing) continue;
    progress.Finish();
    PrintDrawing(*drawing);
    ++listed;
    if (drawing->losses.empty()) ++whole;
  }
  if (listed == 0) return ExitStatus::kNothingDone;
  return whole < line.inputs.size() ? ExitStatus::kPartlyDone : ExitStatus::kDone;
}

}  // namespace hdiplot
