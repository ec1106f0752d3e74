#include "hdiplot/command/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <thread>
#include <type_traits>

#include "hdiplot/command/printing.h"
#include "hdiplot/device/module.h"
#include "hdiplot/system/paths.h"

namespace hdiplot {

namespace {

constexpr const char* kVersion = "hdiplot " HDIPLOT_VERSION;

constexpr const char* kDescription =
    "Plots DXF drawings and plot traces to PDF through the driver module PDF.hdi.";

constexpr const char* kFirstExample = "example: hdiplot plan.dxf -o plan.pdf --paper A3";

constexpr const char* kExamples = R"(Examples:
  hdiplot plan.dxf                                 plan.pdf in the current directory, A4, as large as fits
  hdiplot plan.dxf -o out --paper A1 --scale 1:100 plan.pdf in the directory out
  hdiplot *.dxf -o set.pdf --paper "ANSI D"        one PDF with a page for each drawing
  hdiplot *.dxf --each --output-dir out            a PDF for each drawing
  hdiplot drawings -o set.pdf                      the same for all drawings in a directory
  hdiplot plan.dxf --paper 600x300 --margins 10,5,10,5 --background ivory
  hdiplot plan.dxf --layer 'WALL*' --layer DOORS --skip-layer '*_TEXT' --monochrome
  hdiplot plan.dxf --layout sheets                 the drawing's sheets, each on paper of its own size
  hdiplot plan.dxf --list                          prints what the drawing contains
  hdiplot plan.dxf --record plan.jsonl             also writes the plot as a trace
  hdiplot plan.dxf --preview plan.png              also writes a picture of the first page
  hdiplot plan.jsonl -o again.pdf                  plays a trace
  hdiplot job.jsonl -o job.pdf --results           prints what each call of the trace returned

Exit status: 0 done; 1 plotted, but something in the drawings could not be used, or the record, the preview or
standard output could not be written; 2 nothing plotted.)";

// Help without the lists of options that an option needs or excludes.
class Help : public CLI::Formatter {
  std::string make_option_opts(const CLI::Option* option) const override {
    const std::string text = CLI::Formatter::make_option_opts(option);
    return text.substr(0, std::min(text.find(" Needs:"), text.find(" Excludes:")));
  }
};

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

class ArgumentParser {
 public:
  ArgumentParser() : app_(kDescription, "hdiplot") {
    line_.module = DefaultModulePath();
    app_.formatter(std::make_shared<Help>());
    app_.footer(kExamples);
    app_.set_version_flag("--version", kVersion, "Print the version");
    app_.allow_windows_style_options(false);  // a slash begins a path
    AddFiles();
    AddEach();
    AddPage();
    AddContent();
    AddList();
    AddDriver();
    AddFinish();
    AddMessages();
  }

  // Throws CLI::Error.
  [[nodiscard]] CommandLine Parse(int argc, const char* const* argv) {
    app_.parse(argc, argv);
    if (!plotOne_.empty()) SelectOne();
    if (line_.inputs.empty() && !line_.listPapers)
      throw CLI::RequiredError("a drawing (.dxf), a directory of drawings or a trace (.jsonl)");
    SettleInputs(line_);
    for (const CLI::Option* option : forDrawings_) {
      if ((line_.isTrace || line_.finishOnly) && option->count() > 0) {
        throw CLI::ValidationError(option->get_name(), line_.isTrace
                                                           ? "is for drawings; a trace has its own settings"
                                                           : "is for drawings, not for a PDF");
      }
    }
    const std::string contradiction = Contradiction(line_.finish);
    if (!contradiction.empty()) throw CLI::ValidationError("--pdfa", contradiction);
    if (line_.each && line_.passwordFile == "-") {
      throw CLI::ValidationError("--encrypt", "needs a file with --each");
    }
    SettleOutputs(line_);
    return line_;
  }

  // The text of the help or the version.
  [[nodiscard]] std::string Answer(const CLI::Success& request) const {
    std::ostringstream text;
    app_.exit(request, text, text);
    return text.str();
  }

 private:
  // Paths are converted here: CLI11 would take their text to be in the system's code page.
  template <typename Target>
  CLI::Option* AddPath(const char* name, Target& target, const char* description) {
    const auto take = [&target](const std::string& text) { target = PathFromUtf8(text); };
    return app_.add_option_function<std::string>(name, take, description)->type_name("FILE");
  }

  // An option that traces do not take.
  CLI::Option* ForDrawings(CLI::Option* option) {
    forDrawings_.push_back(option->group("Drawings"));
    return option;
  }

  CLI::Option* AddPatterns(const char* name, std::vector<std::string>& patterns, const char* description) {
    return ForDrawings(app_.add_option(name, patterns, description))
        ->type_name("PATTERN")
        ->expected(1)  // for each time it is given
        ->take_all()
        ->allow_extra_args(false);
  }

  // A flag that sets `target` to `value`.
  template <typename T>
  CLI::Option* AddSetter(const char* name, T& target, std::type_identity_t<T> value,
                         const char* description) {
    return app_.add_flag_callback(
        name, [&target, value] { target = value; }, description);
  }

  void AddFiles();
  void AddEach();
  // In a process of a batch: the one drawing and its file in place of all.
  void SelectOne();
  void AddPage();
  void AddContent();
  void AddList();
  void AddDriver();
  void AddFinish();
  void AddEncryption();
  void AddMessages();

  CLI::App app_;
  CommandLine line_;
  std::vector<const CLI::Option*> forDrawings_;
  std::string plotOne_;
  std::string plotTo_;
};

void ArgumentParser::AddFiles() {
  const auto takeInputs = [this](const std::vector<std::string>& arguments) {
    for (const std::string& argument : arguments) {
      const auto files = InputsNamed(argument);
      line_.inputs.insert(line_.inputs.end(), files.begin(), files.end());
    }
  };
  app_.add_option_function<std::vector<std::string>>(
          "inputs", takeInputs, "Drawings (.dxf), directories of drawings, or one plot trace (.jsonl)")
      ->type_name("FILE");
  app_.add_option(
          "-o,--output", line_.output,
          "The PDF or a directory for it; \".pdf\" is added where it is missing; needed for several drawings")
      ->type_name("FILE");
  AddPath("--record", line_.record, "Also write the plot as a trace");
  auto* preview = AddPath("--preview", line_.preview, "Also write a picture of the first page, as a PNG");
  app_.add_option("--preview-dpi", line_.previewDpi, "Its pixels per inch, from 10 to 2400 (default 100)")
      ->type_name("N")
      ->check(CLI::Range(10, 2400).description(""))
      ->needs(preview);
  app_.add_flag("--results", line_.results, "Print the result of each call of a trace");
}

void ArgumentParser::AddEach() {
  auto* each = ForDrawings(app_.add_flag("--each", line_.each, "A PDF for each drawing"));
  for (const char* option : {"--output", "--record", "--preview"}) each->excludes(app_.get_option(option));
  ForDrawings(
      AddPath("--output-dir", line_.outputDirectory, "The directory for them (default: the current one)"))
      ->type_name("DIR")
      ->needs(each);
  line_.jobs = std::max(std::thread::hardware_concurrency(), 1U);
  ForDrawings(
      app_.add_option("--jobs", line_.jobs, "Drawings to plot at a time (default: the processor's threads)"))
      ->type_name("N")
      ->check(CLI::Range(1, 1024).description(""))
      ->needs(each);
  ForDrawings(app_.add_flag("--newer", line_.newer, "Leave out drawings that are older than their PDF"))
      ->needs(each);
  // Not shown: how a batch calls the command for one drawing.
  app_.add_option("--plot-one", plotOne_)->group("")->needs(each);
  app_.add_option("--plot-to", plotTo_)->group("")->needs(each);
}

void ArgumentParser::SelectOne() {
  line_.each = false;
  line_.inputs = {PathFromUtf8(plotOne_)};
  line_.output = plotTo_;
}

void ArgumentParser::AddPage() {
  PlotOptions& plot = line_.plot;
  ForDrawings(app_.add_option_function("--paper", Into(plot.paper, "--paper", ParsePaper),
                                       "A paper of the driver's list, or a size in millimetres (default A4)"))
      ->type_name("NAME|WxH");
  auto* landscape = ForDrawings(
      AddSetter("--landscape", plot.orientation, Orientation::kLandscape, "Turn every page to landscape"));
  ForDrawings(AddSetter("--portrait", plot.orientation, Orientation::kPortrait,
                        "Turn every page to portrait (default: what fits better)"))
      ->excludes(landscape);
  ForDrawings(app_.add_option_function<std::string>("--margins",
                                                    Into(plot.margins, "--margins", ParseMargins),
                                                    "Margins in millimetres (default: the paper's)"))
      ->type_name("M|L,T,R,B");
  auto* fit = ForDrawings(app_.add_flag("--fit")->description("As large as the page allows (default)"));
  ForDrawings(app_.add_option_function("--scale", Into(plot.scale, "--scale", ParseScale), "Plot to scale"))
      ->type_name("1:N")
      ->excludes(fit);
  ForDrawings(app_.add_option("--dpi", plot.dpi, "Dots per inch, from 72 to 4800 (default 600)"))
      ->type_name("N")
      ->check(CLI::Range(72, 4800).description(""));
  ForDrawings(app_.add_flag("--keep-fractions", plot.keepFractions,
                            "Exact lengths: coordinates are not rounded to whole dots"));
  auto* monochrome = ForDrawings(app_.add_flag("--monochrome", plot.monochrome, "Everything in black"));
  ForDrawings(app_.add_flag("--gray,--grey", plot.grey, "Everything in shades of grey"))
      ->excludes(monochrome);
  ForDrawings(AddPath("--plot-style", line_.plotStyles,
                      "Plot styles (CTB, STB), or \"none\" (default: the layout's, when they are beside the "
                      "drawing)"));
  ForDrawings(app_.add_flag("--printer-margins", plot.printerMargins,
                            "Cut sheets at the margins of the plotter that they name"));
  ForDrawings(app_.add_option_function("--background", Into(plot.background, "--background", ParseColor),
                                       "Colour of the page"))
      ->type_name("COLOR");
}

void ArgumentParser::AddContent() {
  PlotOptions& plot = line_.plot;
  AddPatterns("--layer", plot.layers, "Plot only layers that match, with * and ? (repeatable)");
  AddPatterns("--skip-layer", plot.skipLayers, "Leave out layers that match (repeatable)");
  ForDrawings(AddPath("--font-map", plot.fontMap,
                      "Fonts to plot with: lines of NAME = FAMILY[, bold][, italic] or NAME = stroke:FONT"));
  ForDrawings(app_.add_flag("--text-as-geometry", plot.textAsGeometry,
                            "Text as shapes only, which cannot be searched"));
  ForDrawings(AddSetter("--no-layers", plot.keepLayers, false, "No layers to switch in the PDF"));
  ForDrawings(AddSetter("--no-links", plot.keepLinks, false, "No hyperlinks in the PDF"));
  ForDrawings(app_.add_flag("--shx-comments", plot.strokeComments,
                            "The words of stroke fonts also as comments, which show under the pointer"));
  ForDrawings(app_.add_option("--layout", plot.layout,
                              "A sheet, \"all\" sheets, or \"sheets\": all, or the model if there are none "
                              "(default: the model, or all sheets when it is empty)"))
      ->type_name("NAME|all|sheets|model");
  ForDrawings(AddSetter("--strict", line_.strictness, Strictness::kStrict,
                        "Refuse a drawing with any fault, and plot nothing of it"));
  ForDrawings(app_.add_option("--dwg-converter", line_.dwgConverter,
                              "What makes a DXF of a DWG (default: $HDI_DWG_CONVERTER, or dwg2dxf)"))
      ->type_name("'COMMAND {in} {out}'");
}

void ArgumentParser::AddList() {
  auto* list = ForDrawings(app_.add_flag(
      "--list", line_.list, "Print the drawings' spaces, layouts, entities and layers; plot nothing"));
  for (const char* option : {"--output", "--record", "--preview"}) list->excludes(app_.get_option(option));
}

void ArgumentParser::AddDriver() {
  app_.add_option("--device", line_.device, "The driver's device (default: the first)")
      ->type_name("NAME")
      ->group("Driver");
  AddPath("--module", line_.module,
          "The driver module (default: $HDI_MODULE, or PDF.hdi beside hdiplot or as installed)")
      ->group("Driver");
  app_.add_option("--compression", line_.compression,
                  "What matters more, time or size: fast, normal or small (default: the device's setting)")
      ->type_name("fast|normal|small")
      ->check(CLI::IsMember({"fast", "normal", "small"}).description(""))
      ->group("Driver");
  app_.add_flag("--list-papers", line_.listPapers, "Print the device's papers")->group("Driver");
}

void ArgumentParser::AddFinish() {
  FinishOptions& finish = line_.finish;
  const auto add = [](CLI::Option* option, const char* type = "") {
    return option->type_name(type)->group("Finished PDF");
  };
  auto* bookmarks = add(AddSetter("--bookmarks", line_.bookmarks, true,
                                  "An outline and page labels (default for several pages of drawings)"));
  add(AddSetter("--no-bookmarks", line_.bookmarks, false, "No outline"))->excludes(bookmarks);
  Properties& properties = finish.properties;
  add(app_.add_option("--title", properties.title, "Title of the document"), "TEXT");
  add(app_.add_option("--author", properties.author, "Its author"), "TEXT");
  add(app_.add_option("--subject", properties.subject, "Its subject"), "TEXT");
  add(app_.add_option("--keywords", properties.keywords, "Its keywords"), "TEXT");
  add(app_.add_option("--lang", properties.language, "Its language, as in de-CH"), "TAG");
  const std::map<std::string, PdfA> levels = {{"2b", PdfA::k2b}, {"3b", PdfA::k3b}};
  add(app_.add_option("--pdfa", finish.pdfA, "Make it conform to PDF/A-2b or 3b, for archives")
          ->transform(CLI::CheckedTransformer(levels).description("")),
      "2b|3b");
  const auto attach = [&finish](const std::vector<std::string>& files) {
    for (const std::string& file : files) finish.attachments.push_back(PathFromUtf8(file));
  };
  add(app_.add_option_function<std::vector<std::string>>("--attach", attach,
                                                         "Attach a file, such as the drawing (repeatable)"),
      "FILE")
      ->expected(1)  // for each time it is given
      ->take_all()
      ->allow_extra_args(false);
  add(app_.add_flag("--compact", finish.compact, "Smaller: object streams, and equal images once"));
  add(app_.add_flag("--linearize", finish.linearize, "Show the first page before all is loaded"));
  AddEncryption();
  auto* only = add(app_.add_flag("--finish", line_.finishOnly,
                                 "Change a PDF that the driver has plotted before, in place without -o"));
  for (const char* option :
       {"--record", "--preview", "--results", "--device", "--compression", "--list-papers"}) {
    only->excludes(app_.get_option(option));
  }
}

void ArgumentParser::AddEncryption() {
  const auto encrypt = [this](const std::string& file) {
    line_.passwordFile = PathFromUtf8(file);
    if (!line_.finish.encryption) line_.finish.encryption.emplace();
  };
  auto* option = app_.add_option_function<std::string>(
      "--encrypt", encrypt, "Encrypt with the password in a file, or ask for one (AES-256)");
  option->type_name("FILE|-")->group("Finished PDF");
  const auto add = [this, option](const char* name, bool Encryption::*permission, const char* description) {
    const auto forbid = [this, permission] {
      if (!line_.finish.encryption) line_.finish.encryption.emplace();
      (*line_.finish.encryption).*permission = false;
    };
    app_.add_flag_callback(name, forbid, description)->needs(option)->group("Finished PDF");
  };
  add("--no-printing", &Encryption::mayPrint, "Ask readers not to print it");
  add("--no-copying", &Encryption::mayCopy, "Ask readers not to copy from it");
}

void ArgumentParser::AddMessages() {
  app_.add_flag("--open", line_.open, "Open the PDF in the viewer")->excludes(app_.get_option("--finish"));
  auto* quiet =
      AddSetter("-q,--quiet", line_.verbosity, Verbosity::kQuiet, "Print no summary and no progress");
  AddSetter("-v,--verbose", line_.verbosity, Verbosity::kVerbose, "Print what is being done")
      ->excludes(quiet);
}

}  // namespace

ParsedArguments ParseArguments(int argc, const char* const* argv) {
  ArgumentParser parser;
  try {
    return {parser.Parse(argc, argv), ExitStatus::kDone};
  } catch (const CLI::Success& request) {
    PrintText(parser.Answer(request));
    return {};
  } catch (const CLI::ParseError& error) {
    PrintError(std::string(error.what()) + " (see hdiplot --help)");
    if (argc < 2) PrintLine(stderr, kFirstExample);
    return {std::nullopt, ExitStatus::kNothingDone};
  }
}

}  // namespace hdiplot
