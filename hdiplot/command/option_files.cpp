// The files that the arguments name.
#include <CLI/Error.hpp>
#include <algorithm>

#include "hdiplot/command/options.h"
#include "hdiplot/dxf/dxf_reader.h"
#include "hdiplot/system/ascii_case.h"
#include "hdiplot/system/files.h"
#include "hdiplot/system/names.h"
#include "hdiplot/system/paths.h"
#include "hdiplot/system/split.h"
#include "hdiplot/system/wildcard.h"

namespace hdiplot {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void Refuse(const std::string& what, const std::string& problem) {
  throw CLI::ValidationError(what, problem);
}

bool IsDirectory(const fs::path& path) {
  std::error_code error;
  return fs::is_directory(path, error);
}

bool HasExtension(const fs::path& file, std::string_view extension) {
  return EqualWithoutCase(PathText(file.extension()), extension);
}

// Decided by the first bytes, or by the name where they are ambiguous or can be read only once.
bool IsTrace(const fs::path& file) {
  constexpr size_t kEnough = 64;
  std::string start(kEnough, '\0');
  std::error_code error;
  const FileStream stream = fs::is_regular_file(file, error) ? OpenToRead(file) : FileStream();
  start.resize(stream ? std::fread(start.data(), 1, start.size(), stream.get()) : 0);
  if (LooksLikeDxf(start)) return false;
  return Trimmed(start).starts_with('{') || HasExtension(file, ".jsonl");
}

std::vector<fs::path> DrawingsIn(const fs::path& directory) {
  std::error_code error;
  std::vector<fs::path> files = NamesMatching(directory, "*.dxf", error);
  if (error) Refuse(PathText(directory), "cannot be read: " + error.message());
  if (files.empty()) Refuse(PathText(directory), "is a directory without drawings (.dxf)");
  for (fs::path& file : files) file = directory / file;
  return files;
}

// The file that `name` means for an option. In a directory it is named after the input.
fs::path Settled(const char* option, const fs::path& name, const CommandLine& line, const char* extension) {
  fs::path file = name;
  if (IsDirectory(name)) {
    if (line.inputs.size() > 1) Refuse(option, "is a directory; with several drawings a file name is needed");
    file /= line.inputs.front().filename().replace_extension(extension);
  } else if (name.empty()) {
    Refuse(option, "is empty");
  } else if (!name.has_filename()) {
    Refuse(option, "there is no directory " + PathText(name));
  }
  if (name == "-") Refuse(option, "must name a file; standard output is not one");
  if (NamesDevice(file)) Refuse(option, "names a device, not a file");
  return file;
}

// The driver takes names in Unicode only.
void SettleOutput(CommandLine& line) {
  if (!line.output && line.isTrace) return;  // the trace may name it
  if (!line.output && line.inputs.size() > 1) Refuse("--output", "is needed to plot several drawings");
  if (line.output && !IsUtf8(*line.output)) Refuse("--output", "must be a file name in UTF-8");
  const fs::path name =
      line.output ? PathFromUtf8(*line.output) : line.inputs.front().filename().replace_extension(".pdf");
  line.output = PathText(Settled("--output", name, line, ".pdf"));
  if (!IsUtf8(*line.output)) Refuse("--output", "is needed, as the drawing's name is not in UTF-8");
}

}  // namespace

std::vector<fs::path> InputsNamed(const std::string& argument) {
  std::vector<fs::path> inputs;
  for (const fs::path& file : FilesNamed(argument)) {
    const std::vector<fs::path> files = IsDirectory(file) ? DrawingsIn(file) : std::vector{file};
    inputs.insert(inputs.end(), files.begin(), files.end());
  }
  return inputs;
}

void SettleInputs(CommandLine& line) {
  if (line.finishOnly) {
    if (line.inputs.size() > 1) Refuse("--finish", "takes one PDF");
    return;
  }
  line.isTrace = std::ranges::any_of(line.inputs, IsTrace);
  if (line.isTrace && line.inputs.size() > 1) Refuse("inputs", "a plot trace must be the only input");
  if (line.results && !line.isTrace) Refuse("--results", "is for traces");
}

void SettleOutputs(CommandLine& line) {
  if (line.list || line.each || line.inputs.empty()) return;
  if (line.finishOnly && !line.output) return;  // in place
  SettleOutput(line);
  if (line.record) line.record = Settled("--record", *line.record, line, ".jsonl");
  if (line.preview) {
    line.preview = Settled("--preview", *line.preview, line, ".png");
    if (!HasExtension(*line.preview, ".png")) Refuse("--preview", "must name a PNG file (.png)");
  }
}

}  // namespace hdiplot
