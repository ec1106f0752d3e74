// Plotting drawings from the command line, a page each.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "hdiplot/command/drawing_input.h"
#include "hdiplot/command/drawing_pages.h"
#include "hdiplot/command/job.h"
#include "hdiplot/command/paper_plan.h"
#include "hdiplot/command/plot_commands.h"
#include "hdiplot/command/printing.h"
#include "hdiplot/device/module.h"
#include "hdiplot/plot/plot_drawing.h"
#include "hdiplot/system/names.h"
#include "hdiplot/system/progress.h"
#include "hdiplot/system/wildcard.h"
#include "platform/unicode.h"

namespace hdiplot {

namespace {

// The drawings that can be read.
std::vector<Drawing> ReadDrawings(const CommandLine& line, Progress& progress) {
  std::vector<Drawing> drawings;
  for (const auto& file : line.inputs) {
    if (auto drawing = ReadOrReport(file, line.strictness, progress)) drawings.push_back(std::move(*drawing));
  }
  return drawings;
}

// Layers need no entry in a drawing's table.
std::set<std::string> FoldedLayerNames(const std::vector<Drawing>& drawings) {
  std::set<std::string> names;
  const auto addAll = [&names](const Entities& entities) {
    for (const Entity& entity : entities) names.insert(entity.attributes.layer);
  };
  for (const Drawing& drawing : drawings) {
    for (const auto& [name, layer] : drawing.layers) names.insert(name);
    for (const auto& [name, block] : drawing.blocks) addAll(block.entities);
    addAll(drawing.entities);
  }
  std::set<std::string> folded;
  for (const std::string& name : names) folded.insert(FoldedName(name));
  return folded;
}

void WarnOfUnmatchedPatterns(const std::vector<std::string>& patterns, const std::vector<Drawing>& drawings) {
  if (patterns.empty()) return;
  const std::set<std::string> names = FoldedLayerNames(drawings);
  for (const std::string& pattern : patterns) {
    const bool matches = std::ranges::any_of(
        names, [folded = FoldedName(pattern)](const auto& name) { return MatchesWildcard(folded, name); });
    if (!matches) PrintError("--layer \"" + pattern + "\" matches no layer of any drawing");
  }
}

// 0x00BBGGRR. The driver reads 0 as white, so black is the darkest colour that it can store.
uint32_t BackgroundWord(Rgb color) {
  if (color == Rgb{}) color = {1, 1, 1};
  return uint32_t{color.red} | uint32_t{color.green} << 8 | uint32_t{color.blue} << 16;
}

FontMap ReadFontMap(const PlotOptions& options) {
  FontMap map;
  if (options.fontMap) map.Read(*options.fontMap);
  return map;
}

// A drawing without the layout that is asked for is reported and has none.
std::vector<DrawingPage> AllPages(const std::vector<Drawing>& drawings, const PlotOptions& options,
                                  FontBook& fonts, size_t& withoutPages) {
  std::vector<DrawingPage> all;
  for (const Drawing& drawing : drawings) {
    const std::vector<DrawingPage> pages = PagesOf(drawing, options, fonts);
    if (pages.empty()) {
      ++withoutPages;
      PrintError(NoSuchLayout(drawing, options));
    }
    all.insert(all.end(), pages.begin(), pages.end());
  }
  return all;
}

JobSettings SettingsFor(const CommandLine& line, const Drawing& first, const PaperPlan& paper,
                        Orientation orientation) {
  JobSettings job;
  job.device = hdi::ToUtf16(line.device);
  job.docName = hdi::ToUtf16(first.name);
  job.devMode = {DevModeSetting("dmPrintQuality", line.plot.dpi),
                 DevModeSetting("dmYResolution", line.plot.dpi)};
  paper.AddTo(job, orientation);
  if (line.plot.keepFractions) job.devMode.push_back(DevModeSetting("keepFractions", 1));
  if (line.plot.background) {
    job.devMode.push_back(DevModeSetting("backgroundColor", BackgroundWord(*line.plot.background)));
  }
  if (!line.plot.keepLayers) job.devMode.push_back(DevModeSetting("layersEnabled", 0));
  if (!line.plot.keepLinks) job.devMode.push_back(DevModeSetting("linksEnabled", 0));
  if (line.plot.textAsGeometry) job.devMode.push_back(DevModeSetting("textAsGeometry", 1));
  return job;
}

// By what is printed behind the number.
using SkippedCounts = std::map<std::string, uint64_t>;

void Add(const LeftOut& leftOut, SkippedCounts& skipped) {
  const auto add = [&skipped](const std::string& what, uint64_t count) {
    if (count > 0) skipped[what] += count;
  };
  add(fmt::format("INSERT nested deeper than {} blocks", DrawingWalk::kDeepestInsert),
      leftOut.inserts.tooDeep);
  add(fmt::format("INSERT cut off behind {} entities from blocks", DrawingWalk::kMostFromBlocks),
      leftOut.inserts.cutOff);
  add("too far off the sheet", leftOut.tooFarOff);
}

// The driver knows one scale for all pages of a document. Where the drawings have several, lengths are
// measured in millimetres of the paper, which is true of each page, and not in units of a drawing.
class MeasureScale {
 public:
  void Add(const PlottedPage& page, const Sheet& sheet) {
    constexpr double kRoom = 1e-9;
    onPaper_ = sheet.dotsPerMillimetre;
    for (const double scale : page.dotsPerUnit) {
      if (!common_) common_ = scale;
      differs_ = differs_ || std::abs(scale - *common_) > kRoom * *common_;
    }
  }
  [[nodiscard]] bool Differs() const { return differs_; }
  // Dots a unit of measure.
  [[nodiscard]] double Get() const { return differs_ ? onPaper_ : common_.value_or(onPaper_); }

 private:
  double onPaper_ = 1;
  std::optional<double> common_;
  bool differs_ = false;
};

// What is skipped, by the reader and in plotting.
SkippedCounts PlotPages(const CommandLine& line, const std::vector<DrawingPage>& pages,
                        const PaperPlan& paper, FontBook& fonts, ImageBook& images, PlotDevice& device,
                        Progress& progress) {
  SkippedCounts skipped;
  MeasureScale measure;
  const auto changes = RecordChanges(pages, paper);
  for (size_t i = 0; i < pages.size(); ++i) {
    const DrawingPage& page = pages[i];
    device.Make(call::StartPage{changes[i]});
    const uint64_t before = device.ObjectCount();
    const Sheet sheet = MakeSheet(device);
    const PlottedPage plotted = PlotDrawing(page.part, line.plot, sheet, fonts, images, device, progress);
    measure.Add(plotted, sheet);
    Add(plotted.leftOut, skipped);
    for (const auto& [type, count] : SkippedOn(page)) skipped[type] += count;
    device.Make(call::EndPage{});
    if (line.verbosity == Verbosity::kVerbose) {
      progress.Finish();
      const std::string layout = page.part.layout != nullptr ? ", " + page.part.layout->name : "";
      PrintLine(stderr, fmt::format("page {}: {}{}, {}, {} objects", i + 1, page.part.drawing->name, layout,
                                    PaperName(page, paper), device.ObjectCount() - before));
    }
  }
  device.Make(call::SetLineScale{measure.Get()});
  if (measure.Differs() && line.verbosity == Verbosity::kVerbose) {
    PrintLine(stderr, "the drawings differ in scale: a reader measures millimetres on paper");
  }
  return skipped;
}

void PrintSkipped(const CommandLine& line, const SkippedCounts& skipped) {
  std::FILE* stream = SummaryStream(line);
  if (stream != nullptr && !skipped.empty()) PrintLine(stream, FormatSkipped(skipped));
}

}  // namespace

ExitStatus PlotDrawings(const CommandLine& line) {
  const Clock::time_point start = Clock::now();
  Progress progress(ProgressFor(line.verbosity));
  FontBook fonts(ReadFontMap(line.plot), [&](const std::string& message) {
    if (line.verbosity != Verbosity::kVerbose) return;
    progress.Finish();
    PrintLine(stderr, message);
  });
  ImageBook images([&](const std::string& message) {
    progress.Finish();
    PrintError(message);
  });
  const std::vector<Drawing> drawings = ReadDrawings(line, progress);
  if (drawings.empty()) return ExitStatus::kNothingDone;

  size_t withoutPages = 0;
  std::vector<DrawingPage> pages = AllPages(drawings, line.plot, fonts, withoutPages);
  if (pages.empty()) return ExitStatus::kNothingDone;

  WarnOfUnmatchedPatterns(line.plot.layers, drawings);

  const Module module(line.module);
  hdi::HT_Driver& driver = module.Driver(hdi::ToUtf16(line.device));
  const PaperPlan paper(driver, line.plot);
  ChooseOrientations(pages, line.plot, paper);
  const DrawingPage& first = pages.front();
  Job job(driver, SettingsFor(line, *first.part.drawing, paper, first.orientation), line);
  const SkippedCounts skipped = PlotPages(line, pages, paper, fonts, images, job.Device(), progress);
  const ExitStatus status = Conclude(job, line, start, progress);
  PrintSkipped(line, skipped);
  const bool isWhole = std::ranges::all_of(drawings, [](const Drawing& d) { return d.losses.empty(); });
  const bool isPartial =
      !isWhole || drawings.size() < line.inputs.size() || withoutPages > 0 || images.HasUnusable();
  return isPartial ? ExitStatus::kPartlyDone : status;
}

}  // namespace hdiplot
