// The options as CLI11 knows them, and what may stand together.
#include "hdiplot/command/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <functional>
#include <sstream>
#include <stdexcept>
#include <type_traits>

#include "hdiplot/command/printing.h"
#include "hdiplot/device/module.h"
#include "hdiplot/dxf/dxf_file.h"
#include "hdiplot/dxf/group.h"
#include "hdiplot/system/ascii_case.h"
#include "hdiplot/system/files.h"
#include "hdiplot/system/names.h"
#include "hdiplot/system/paths.h"

namespace hdiplot {

namespace {

constexpr const char* kVersion = "hdiplot 1.0";

constexpr const char* kDescription =
    "Plots DXF drawings and plot traces to PDF through the driver module PDF.hdi.";

constexpr const char* kExamples = R"(Examples:
  hdiplot plan.dxf                                 plan.pdf in the current directory, A4, as large as fits
  hdiplot plan.dxf -o out/plan.pdf --paper A1 --scale 1:100
  hdiplot *.dxf -o set.pdf --paper "ANSI D"        one PDF with a page for each drawing
  hdiplot plan.dxf --paper 600x300 --margins 10,5,10,5 --background ivory
  hdiplot plan.dxf --layer 'WALL*' --layer DOORS --skip-layer '*_TEXT' --monochrome
  hdiplot plan.dxf --layout all                    the drawing's sheets, each on paper of its own size
  hdiplot plan.dxf --list                          tells what is in a drawing
  hdiplot plan.dxf --record plan.jsonl             also keeps the plot as a trace
  hdiplot plan.dxf --preview plan.png              also makes a picture of the first page
  hdiplot plan.jsonl -o again.pdf                  plays a trace
  hdiplot job.jsonl -o job.pdf --results           prints what each call of the trace returned

Exit status: 0 done; 1 plotted, but something in the drawings could not be used, or the record, the preview or
standard output could not be written; 2 nothing plotted.)";

// A converter for an option's value that turns exceptions into a message about this option.
template <typename T>
std::function<void(const std::string&)> Into(
    T& target, const char* option, std::type_identity_t<std::function<T(const std::string&)>> parse) {
  return [&target, option, parse](const std::string& text) {
    try {
      target = parse(text);
    } catch (const std::invalid_argument& error) {
      throw CLI::ValidationError(option, std::string(error.what()) + ", not \"" + text + "\"");
    }
  };
}

bool HasExtension(const std::filesystem::path& file, std::string_view extension) {
  return EqualWithoutCase(PathText(file.extension()), extension);
}

// What a file is, its first bytes tell; its name does where they do not, or where they can be read but once.
bool IsTrace(const std::filesystem::path& file) {
  constexpr size_t kEnough = 64;
  std::string start(kEnough, '\0');
  std::error_code error;
  const FileStream stream = std::filesystem::is_regular_file(file, error) ? OpenToRead(file) : FileStream();
  start.resize(stream ? std::fread(start.data(), 1, start.size(), stream.get()) : 0);
  if (LooksLikeDxf(start)) return false;
  return Trimmed(start).starts_with('{') || HasExtension(file, ".jsonl");
}

// The name of a file that is to be made.
void CheckFileName(const char* option, const std::string& name) {
  const auto fail = [option](const char* problem) { throw CLI::ValidationError(option, problem); };
  const std::filesystem::path path = PathFromUtf8(name);
  if (!path.has_filename()) fail("names no file");
  if (path.filename() == "." || path.filename() == "..") fail("names a directory");
  if (name == "-") fail("takes the name of a file; nothing is written to standard output");
  if (NamesDevice(path)) fail("names a device, not a file");
}

// What CLI11 cannot tell: the rules between options and kinds of input. Throws CLI::ValidationError.
void CheckInputs(CommandLine& line, const std::vector<const CLI::Option*>& drawingOptions) {
  const auto traces = std::ranges::count_if(line.inputs, IsTrace);
  if (traces > 0 && line.inputs.size() > 1) {
    throw CLI::ValidationError("inputs", "a plot trace is played alone");
  }
  line.isTrace = traces > 0;
  for (const CLI::Option* option : drawingOptions) {
    if (line.isTrace && option->count() > 0) {
      throw CLI::ValidationError(option->get_name(), "is for drawings; a trace has its own settings");
    }
  }
  if (line.results && !line.isTrace) throw CLI::ValidationError("--results", "is for traces");
  if (line.list) return;
  if (!line.isTrace && line.inputs.size() > 1 && !line.output) {
    throw CLI::ValidationError("--output", "is needed to plot several drawings");
  }
  if (!line.output && !line.isTrace && !line.inputs.empty()) {
    line.output = PathText(line.inputs.front().filename().replace_extension(".pdf"));
    if (!IsUtf8(*line.output)) {
      throw CLI::ValidationError("--output", "is needed, as the drawing's name is not in UTF-8");
    }
  }
  if (line.output) CheckFileName("--output", *line.output);
  if (line.output && !IsUtf8(*line.output)) {
    throw CLI::ValidationError("--output", "takes a file name in UTF-8");
  }
  if (line.record) CheckFileName("--record", PathText(*line.record));
  if (line.preview) {
    CheckFileName("--preview", PathText(*line.preview));
    if (!HasExtension(*line.preview, ".png")) {
      throw CLI::ValidationError("--preview", "takes the name of a PNG file (.png)");
    }
  }
}

}  // namespace

ParsedArguments ParseArguments(int argc, const char* const* argv) {
  CommandLine line;
  line.module = DefaultModulePath();
  bool landscape = false;
  bool portrait = false;
  bool fit = false;
  bool quiet = false;
  bool verbose = false;

  CLI::App app(kDescription, "hdiplot");
  app.footer(kExamples);
  app.set_version_flag("--version", kVersion, "Print the version");
  app.allow_windows_style_options(false);  // with a slash, which starts a path
  // Paths are converted here, as CLI11 would take their text to be in the system's code page.
  const auto addPath = [&app](const char* name, auto& target, const char* description) {
    const auto take = [&target](const std::string& text) { target = PathFromUtf8(text); };
    return app.add_option_function<std::string>(name, take, description)->type_name("FILE");
  };
  const auto takeInputs = [&line](const std::vector<std::string>& arguments) {
    for (const std::string& argument : arguments) {
      const auto files = FilesNamed(argument);
      line.inputs.insert(line.inputs.end(), files.begin(), files.end());
    }
  };
  app.add_option_function<std::vector<std::string>>("inputs", takeInputs,
                                                    "Drawings (.dxf), or one plot trace (.jsonl)")
      ->type_name("FILE");
  auto* output = app.add_option("-o,--output", line.output,
                                "The PDF; \".pdf\" is added where it is missing; needed for several drawings")
                     ->type_name("FILE");
  auto* record = addPath("--record", line.record, "Write the plot as a trace, too");
  auto* preview = addPath("--preview", line.preview, "Write a picture of the first page, too, as a PNG");
  app.add_option("--preview-dpi", line.previewDpi, "Its pixels per inch, from 10 to 2400 (default 100)")
      ->type_name("N")
      ->check(CLI::Range(10, 2400).description(""))
      ->needs(preview);
  app.add_flag("--results", line.results, "Print the result of each call of a trace");

  std::vector<const CLI::Option*> drawings;
  const auto forDrawings = [&drawings](CLI::Option* option) {
    drawings.push_back(option->group("Drawings"));
    return option;
  };
  PlotOptions& plot = line.plot;
  forDrawings(app.add_option_function("--paper", Into(plot.paper, "--paper", ParsePaper),
                                      "A paper of the driver's list, or a size in millimetres (default A4)"))
      ->type_name("NAME|WxH");
  auto* wide = forDrawings(app.add_flag("--landscape", landscape, "Turn every page to landscape"));
  forDrawings(app.add_flag("--portrait", portrait, "Turn every page to portrait (default: what fits better)"))
      ->excludes(wide);
  forDrawings(app.add_option_function<std::string>("--margins", Into(plot.margins, "--margins", ParseMargins),
                                                   "Margins in millimetres (default: the paper's)"))
      ->type_name("M|L,T,R,B");
  auto* fits = forDrawings(app.add_flag("--fit", fit, "As large as the page takes (default)"));
  forDrawings(app.add_option_function("--scale", Into(plot.scale, "--scale", ParseScale), "Plot to scale"))
      ->type_name("1:N")
      ->excludes(fits);
  forDrawings(app.add_option("--dpi", plot.dpi, "Dots per inch, from 72 to 4800 (default 600)"))
      ->type_name("N")
      ->check(CLI::Range(72, 4800).description(""));
  forDrawings(app.add_flag("--keep-fractions", plot.keepFractions,
                           "Exact lengths: coordinates are not rounded to whole dots"));
  forDrawings(app.add_flag("--monochrome", plot.monochrome, "Everything in black"));
  forDrawings(app.add_option_function("--background", Into(plot.background, "--background", ParseColor),
                                      "Colour of the page"))
      ->type_name("COLOR");
  forDrawings(
      app.add_option("--layer", plot.layers, "Plot only layers that match, with * and ? (repeatable)"))
      ->type_name("PATTERN")
      ->expected(1)  // for each time it is given
      ->take_all()
      ->allow_extra_args(false);
  forDrawings(app.add_option("--skip-layer", plot.skipLayers, "Leave out layers that match (repeatable)"))
      ->type_name("PATTERN")
      ->expected(1)  // for each time it is given
      ->take_all()
      ->allow_extra_args(false);
  forDrawings(addPath("--font-map", plot.fontMap,
                      "Fonts to plot with: lines of NAME = FAMILY[, bold][, italic] or "
                      "NAME = stroke:FONT"));
  forDrawings(app.add_flag("--text-as-geometry", plot.textAsGeometry,
                           "Text as shapes only, which cannot be searched"));

  forDrawings(app.add_flag_callback(
      "--no-layers", [&plot] { plot.keepLayers = false; }, "No layers to switch in the PDF"));
  forDrawings(app.add_flag_callback(
      "--no-links", [&plot] { plot.keepLinks = false; }, "No hyperlinks in the PDF"));
  forDrawings(app.add_flag("--shx-comments", plot.strokeComments,
                           "The words of stroke fonts as comments, too, which show under the pointer"));
  forDrawings(app.add_option("--layout", plot.layout,
                             "The sheet to plot, a page each with \"all\" (default: the model, or all "
                             "layouts when it is empty)"))
      ->type_name("NAME|all|model");
  forDrawings(app.add_flag_callback(
      "--strict", [&line] { line.strictness = Strictness::kStrict; },
      "Refuse a drawing that is broken anywhere, and plot nothing of it"));
  auto* list = forDrawings(app.add_flag(
      "--list", line.list, "Print the drawings' spaces, layouts, entities and layers; plot nothing"));
  list->excludes(output)->excludes(record)->excludes(preview);

  app.add_option("--device", line.device, "The driver's device (default: the first)")
      ->type_name("NAME")
      ->group("Driver");
  addPath("--module", line.module, "The driver module (default: $HDI_MODULE, or PDF.hdi beside hdiplot)")
      ->group("Driver");
  app.add_option("--compression", line.compression,
                 "What matters more, time or size: fast, normal or small (default: the device's setting)")
      ->type_name("fast|normal|small")
      ->check(CLI::IsMember({"fast", "normal", "small"}).description(""))
      ->group("Driver");
  app.add_flag("--list-papers", line.listPapers, "Print the device's papers")->group("Driver");
  app.add_flag("--open", line.open, "Open the PDF in the viewer");
  auto* silent = app.add_flag("-q,--quiet", quiet, "Print no summary and no progress");
  app.add_flag("-v,--verbose", verbose, "Tell what is being done")->excludes(silent);

  try {
    app.parse(argc, argv);
    if (line.inputs.empty() && !line.listPapers)
      throw CLI::RequiredError("A drawing (.dxf) or a trace (.jsonl)");
    CheckInputs(line, drawings);
  } catch (const CLI::Success& request) {
    std::ostringstream text;
    app.exit(request, text, text);
    PrintText(text.str());
    return {};
  } catch (const CLI::ParseError& error) {
    PrintError(std::string(error.what()) + " (see hdiplot --help)");
    return {std::nullopt, ExitStatus::kNothingDone};
  }
  if (landscape) plot.orientation = Orientation::kLandscape;
  if (portrait) plot.orientation = Orientation::kPortrait;
  if (quiet) line.verbosity = Verbosity::kQuiet;
  if (verbose) line.verbosity = Verbosity::kVerbose;
  return {line, ExitStatus::kDone};
}

}  // namespace hdiplot
