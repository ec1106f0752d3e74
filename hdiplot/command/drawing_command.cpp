// Plotting drawings from the command line, a page each.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "hdiplot/command/drawing_input.h"
#include "hdiplot/command/drawing_pages.h"
#include "hdiplot/command/finishing.h"
#include "hdiplot/command/job.h"
#include "hdiplot/command/options.h"
#include "hdiplot/command/paper_plan.h"
#include "hdiplot/command/plot_style_book.h"
#include "hdiplot/command/printing.h"
#include "hdiplot/device/module.h"
#include "hdiplot/plot/plot_drawing.h"
#include "hdiplot/system/names.h"
#include "hdiplot/system/paths.h"
#include "hdiplot/system/progress.h"
#include "hdiplot/system/wildcard.h"
#include "platform/unicode.h"

namespace hdiplot {

namespace {

// The drawings that can be read.
std::vector<Drawing> ReadDrawings(const CommandLine& line, Progress& progress) {
  std::vector<Drawing> drawings;
  for (const auto& file : line.inputs) {
    if (auto drawing = ReadOrReport(file, line, progress)) drawings.push_back(std::move(*drawing));
  }
  return drawings;
}

std::string LayerNames(const std::map<std::string, ListedLayer>& layers) {
  constexpr size_t kMost = 20;
  std::vector<std::string> names;
  for (const auto& [folded, layer] : layers) {
    if (names.size() < kMost) names.push_back(layer.name);
  }
  if (layers.size() > kMost) names.push_back(fmt::format("... ({} in all; see --list)", layers.size()));
  return names.empty() ? "none" : Listed(names, std::identity());
}

// Throws for a pattern that matches no layer of any drawing.
void CheckLayerPatterns(const std::vector<std::string>& patterns, const std::vector<Drawing>& drawings) {
  if (patterns.empty()) return;
  const std::map<std::string, ListedLayer> layers = LayersOf(drawings);
  for (const std::string& pattern : patterns) {
    const bool matches = std::ranges::any_of(layers, [folded = FoldedName(pattern)](const auto& layer) {
      return MatchesWildcard(folded, layer.first);
    });
    if (matches) continue;
    throw std::runtime_error("--layer \"" + pattern +
                             "\" matches no layer; there are: " + LayerNames(layers));
  }
}

// The driver reads 0 as white, so the darkest colour that it can store stands for black.
uint32_t BackgroundWord(Rgb color) { return ColorWord(color == Rgb{} ? Rgb{1, 1, 1} : color); }

FontMap ReadFontMap(const PlotOptions& options) {
  FontMap map;
  if (options.fontMap) map.Read(*options.fontMap);
  return map;
}

// A drawing without the selected layout is reported and has no pages.
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

// Whether nothing is plotted on the page: the extents are those of all shapes that are.
bool IsBlank(const DrawingPage& page) { return page.part.extents.Empty(); }

void PrintCut(const std::string& drawing, const CutPage& cut) {
  PrintError(fmt::format(
      "{}: cut off: at this scale it is {:.0f} x {:.0f} mm, and the page shows {:.0f} x {:.0f} mm", drawing,
      cut.width, cut.height, cut.seenWidth, cut.seenHeight));
}

// Missing fonts, each once.
class FontReport {
 public:
  explicit FontReport(bool isVerbose) : isVerbose_(isVerbose) {}

  void Add(const std::string& name, const std::string& substitute) {
    if (isVerbose_)
      PrintLine(stderr, fmt::format("font \"{}\" is not installed; using \"{}\"", name, substitute));
    missing_.push_back(fmt::format("{} by {}", name, substitute));
  }
  // In one line, unless that has been told by then.
  void Print(std::FILE* stream) const {
    if (stream == nullptr || isVerbose_ || missing_.empty()) return;
    PrintLine(stream, "fonts replaced: " + Listed(missing_, std::identity()));
  }

 private:
  bool isVerbose_;
  std::vector<std::string> missing_;
};

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

// What is left out, with its number, by its type or by the reason.
using SkippedCounts = std::map<std::string, uint64_t>;

// In the order of the pages.
using SkippedByDrawing = std::vector<std::pair<const Drawing*, SkippedCounts>>;

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

// The driver has one scale for all pages of a document. Where the drawings have several, readers measure
// lengths in millimetres on paper, which is right for every page, instead of in units of a drawing.
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
  // In dots per unit of measure.
  [[nodiscard]] double Get() const { return differs_ ? onPaper_ : common_.value_or(onPaper_); }

 private:
  double onPaper_ = 1;
  std::optional<double> common_;
  bool differs_ = false;
};

// Returns what is skipped, by the reader and in plotting.
SkippedByDrawing PlotPages(const CommandLine& line, const std::vector<DrawingPage>& pages,
                           const PaperPlan& paper, PlotStyleBook& styles, FontBook& fonts, ImageBook& images,
                           PlotDevice& device, Progress& progress) {
  SkippedByDrawing skipped;
  MeasureScale measure;
  PlotOptions options = line.plot;
  const auto changes = RecordChanges(pages, options, paper);
  for (size_t i = 0; i < pages.size(); ++i) {
    const DrawingPage& page = pages[i];
    device.Make(call::StartPage{changes[i]});
    const uint64_t before = device.ObjectCount();
    const Sheet sheet = MakeSheet(device);
    options.plotStyles = styles.Of(page.part);
    const PlottedPage plotted = PlotDrawing(page.part, options, sheet, fonts, images, device, progress);
    measure.Add(plotted, sheet);
    if (plotted.cut) {
      progress.Finish();
      PrintCut(page.part.drawing->name, *plotted.cut);
    }
    if (skipped.empty() || skipped.back().first != page.part.drawing) {
      skipped.emplace_back(page.part.drawing, SkippedCounts());
    }
    SkippedCounts& counts = skipped.back().second;
    Add(plotted.leftOut, counts);
    for (const auto& [type, count] : SkippedOn(page)) counts[type] += count;
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
    PrintLine(stderr, "the drawings differ in scale: readers measure millimetres on paper");
  }
  return skipped;
}

void PrintSkipped(const CommandLine& line, const SkippedByDrawing& skipped) {
  std::FILE* stream = SummaryStream(line);
  if (stream == nullptr) return;
  for (const auto& [drawing, counts] : skipped) {
    if (counts.empty()) continue;
    const std::string where = skipped.size() > 1 ? " in " + drawing->name : "";
    PrintLine(stream, "skipped" + where + ": " + FormatCounts(counts));
  }
}

std::vector<PageName> NamesOf(const std::vector<DrawingPage>& pages) {
  std::vector<PageName> names;
  for (const DrawingPage& page : pages) {
    const std::string drawing = PathText(PathFromUtf8(page.part.drawing->name).stem());
    names.push_back({drawing, page.part.layout != nullptr ? page.part.layout->name : drawing});
  }
  return names;
}

}  // namespace

ExitStatus PlotDrawings(const CommandLine& line) {
  const Clock::time_point start = Clock::now();
  Progress progress(ProgressFor(line.verbosity));
  FontReport fontReport(line.verbosity == Verbosity::kVerbose);
  FontBook fonts(ReadFontMap(line.plot), [&](const std::string& name, const std::string& substitute) {
    progress.Finish();
    fontReport.Add(name, substitute);
  });
  ImageBook images([&](const std::string& message) {
    progress.Finish();
    PrintError(message);
  });
  PlotStyleBook styles(line.plotStyles, [&](const std::string& message) {
    progress.Finish();
    PrintError(message);
  });
  const std::vector<Drawing> drawings = ReadDrawings(line, progress);
  if (drawings.empty()) return ExitStatus::kNothingDone;

  CheckLayerPatterns(line.plot.layers, drawings);
  size_t withoutPages = 0;
  std::vector<DrawingPage> pages = AllPages(drawings, line.plot, fonts, withoutPages);
  for (const DrawingPage& page : pages) {
    if (IsBlank(page)) PrintError(NothingToPlot(page));
  }
  // A blank plot would replace an earlier one for nothing.
  if (std::ranges::all_of(pages, IsBlank)) return ExitStatus::kNothingDone;

  const Module module(line.module);
  hdi::HT_Driver& driver = module.Driver(hdi::ToUtf16(line.device));
  const PaperPlan paper(driver, line.plot);
  ChooseOrientations(pages, line.plot, paper);
  const DrawingPage& first = pages.front();
  const FinishOptions finish = ResolveFinish(line, NamesOf(pages));
  Job job(driver, SettingsFor(line, *first.part.drawing, paper, first.orientation), line);
  const SkippedByDrawing skipped =
      PlotPages(line, pages, paper, styles, fonts, images, job.Device(), progress);
  const ExitStatus status = Conclude(job, line, finish, start, progress);
  PrintSkipped(line, skipped);
  fontReport.Print(SummaryStream(line));
  const bool isWhole = std::ranges::all_of(drawings, [](const Drawing& d) { return d.losses.empty(); });
  const bool isPartial = !isWhole || drawings.size() < line.inputs.size() || withoutPages > 0 ||
                         images.HasUnusable() || styles.HasUnusable() || std::ranges::any_of(pages, IsBlank);
  return isPartial ? ExitStatus::kPartlyDone : status;
}

}  // namespace hdiplot
