// The command line: its options, and the commands that it selects.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "hdiplot/dxf/dxf_reader.h"
#include "hdiplot/finish/finish.h"
#include "hdiplot/plot/plot_options.h"
#include "hdiplot/system/progress.h"

namespace hdiplot {

enum class ExitStatus : int {
  kDone = 0,
  kPartlyDone = 1,  // plotted, but some drawings, parts of them or images failed, or the record, the preview
                    // or standard output could not be written
  kNothingDone = 2,
};

enum class Verbosity { kQuiet, kNormal, kVerbose };

[[nodiscard]] inline ProgressDisplay ProgressFor(Verbosity verbosity) {
  return verbosity == Verbosity::kQuiet ? ProgressDisplay::kOff : ProgressDisplay::kAuto;
}

struct CommandLine {
  std::vector<std::filesystem::path> inputs;  // drawings, one trace, or with `finishOnly` one PDF
  bool isTrace = false;
  bool listPapers = false;            // and plot nothing; no inputs then
  bool list = false;                  // print what the drawings contain, and plot nothing
  std::optional<std::string> output;  // always set for drawings to be plotted
  std::optional<std::filesystem::path> record;
  std::optional<std::filesystem::path> preview;  // a picture of the first page
  int previewDpi = 100;
  bool results = false;
  bool each = false;  // a PDF for each drawing, in `outputDirectory`
  std::filesystem::path outputDirectory = ".";
  unsigned jobs = 1;                                // so many of them at a time
  bool newer = false;                               // only those whose PDF is older than the drawing
  Strictness strictness = Strictness::kForgiving;   // with drawings
  std::string dwgConverter;                         // a command with {in} and {out}; empty: the usual one
  std::optional<std::filesystem::path> plotStyles;  // a file, or "none"; default: that of each layout
  PlotOptions plot;                                 // of drawings
  std::string device;                               // empty: the trace's, or the first
  std::filesystem::path module;
  std::string compression;  // empty: the device's setting
  bool open = false;
  bool finishOnly = false;             // plot nothing
  FinishOptions finish;                // but for bookmarks, the password and the date
  std::optional<bool> bookmarks;       // default: for several pages of drawings
  std::filesystem::path passwordFile;  // "-": the terminal; for `finish.encryption`
  Verbosity verbosity = Verbosity::kNormal;
};

struct ParsedArguments {
  std::optional<CommandLine> commandLine;  // none: there is nothing left to do
  ExitStatus status = ExitStatus::kDone;   // in that case
};

// Prints the help, the version, or one message about what is wrong with the arguments.
[[nodiscard]] ParsedArguments ParseArguments(int argc, const char* const* argv);

// The files of a command line. Each throws CLI::ValidationError.

// The files that one argument means: a directory stands for the drawings in it, in alphabetical order.
[[nodiscard]] std::vector<std::filesystem::path> InputsNamed(const std::string& argument);
// Sets `isTrace`, and refuses inputs and options that exclude each other.
void SettleInputs(CommandLine& line);
// Completes the names of the files to be written: in a directory they are named after the input.
void SettleOutputs(CommandLine& line);

// Values of single options. Each throws std::invalid_argument with what is wrong.
[[nodiscard]] PaperChoice ParsePaper(const std::string& text);
[[nodiscard]] Margins ParseMargins(const std::string& text);
[[nodiscard]] double ParseScale(const std::string& text);  // N of 1:N
[[nodiscard]] Rgb ParseColor(const std::string& text);

// The commands. Each throws a std::runtime_error with the message when it fails as a whole; any other fault
// is printed and shows in the status.
[[nodiscard]] ExitStatus PlotTrace(const CommandLine& line);
[[nodiscard]] ExitStatus PlotDrawings(const CommandLine& line);
// `words`: the arguments, for the processes that plot one drawing each.
[[nodiscard]] ExitStatus PlotEach(const CommandLine& line, const std::vector<std::string>& words);
[[nodiscard]] ExitStatus ListDrawings(const CommandLine& line);
[[nodiscard]] ExitStatus ListPapers(const CommandLine& line);
[[nodiscard]] ExitStatus FinishExistingPdf(const CommandLine& line);

}  // namespace hdiplot
