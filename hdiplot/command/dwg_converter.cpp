#include "hdiplot/command/dwg_converter.h"

#include <fmt/format.h>

#include <cstdio>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "hdiplot/system/child_process.h"
#include "hdiplot/system/errors.h"
#include "hdiplot/system/files.h"
#include "hdiplot/system/paths.h"
#include "hdiplot/system/process.h"
#include "hdiplot/system/split.h"

namespace hdiplot {

namespace fs = std::filesystem;

namespace {

constexpr const char* kUsualConverter = "dwg2dxf -y -o {out} {in}";
constexpr ChildLimits kLimits{600, uint64_t{4} << 30};

// Words apart by blanks; quotes of either kind keep blanks in a word.
std::vector<std::string> WordsOf(std::string_view command) {
  std::vector<std::string> words;
  char quote = '\0';
  bool isOpen = false;  // the last word
  for (const char c : command) {
    if (quote == '\0' && IsBlank(c)) {
      isOpen = false;
      continue;
    }
    if (!std::exchange(isOpen, true)) words.emplace_back();
    if (quote == '\0' && (c == '"' || c == '\'')) {
      quote = c;
    } else if (c == quote) {
      quote = '\0';
    } else {
      words.back() += c;
    }
  }
  return words;
}

// Returns whether `word` has the mark.
bool Replace(std::string& word, std::string_view mark, const fs::path& file) {
  const size_t at = word.find(mark);
  if (at == std::string::npos) return false;
  word.replace(at, mark.size(), PathText(file));
  return true;
}

std::string FirstLine(std::string_view text) {
  text = Trimmed(text);
  return std::string(text.substr(0, text.find('\n')));
}

// In a new directory, which others cannot write to.
fs::path NewDirectory() {
  for (int i = 0; i < 100; ++i) {
    fs::path directory = fs::temp_directory_path() / fmt::format("hdiplot-{}-{}", ProcessNumber(), i);
    if (!fs::create_directory(directory)) continue;
    fs::permissions(directory, fs::perms::owner_all);
    return directory;
  }
  throw std::system_error(std::make_error_code(std::errc::file_exists), "temporary directory");
}

}  // namespace

bool IsDwg(const fs::path& file) {
  std::error_code error;
  if (!fs::is_regular_file(file, error)) return false;
  std::string start(4, '\0');
  const FileStream stream = OpenToRead(file);
  return stream && std::fread(start.data(), 1, start.size(), stream.get()) == start.size() && start == "AC10";
}

ConvertedDwg::ConvertedDwg(const fs::path& dwg, const std::string& command) : directory_(NewDirectory()) {
  dxf_ = directory_ / fs::path(dwg.filename()).replace_extension(".dxf");
  try {
    Convert(dwg, command);
  } catch (...) {
    std::error_code ignored;
    fs::remove_all(directory_, ignored);
    throw;
  }
}

ConvertedDwg::~ConvertedDwg() {
  std::error_code ignored;
  fs::remove_all(directory_, ignored);
}

void ConvertedDwg::Convert(const fs::path& dwg, const std::string& command) const {
  std::string chosen = command.empty() ? PathText(PathFromEnvironment("HDI_DWG_CONVERTER")) : command;
  const bool isUsual = chosen.empty();
  std::vector<std::string> words = WordsOf(isUsual ? kUsualConverter : chosen);
  bool hasInput = false;
  bool hasOutput = false;
  for (std::string& word : words) {
    hasInput = Replace(word, "{in}", fs::absolute(dwg)) || hasInput;
    hasOutput = Replace(word, "{out}", dxf_) || hasOutput;
  }
  if (!hasInput || !hasOutput)
    throw FileError(dwg, 0, "the converter's command needs {in} and {out}: " + chosen);
  const fs::path program = FindProgram(words.front());
  if (program.empty() && isUsual) {
    throw FileError(dwg, 0,
                    "this is a DWG drawing; install LibreDWG (dwg2dxf), name another converter with "
                    "--dwg-converter, or save the drawing as a DXF");
  }
  if (program.empty()) throw FileError(dwg, 0, "there is no converter " + words.front());
  words.erase(words.begin());
  const ChildRun run = RunChild(program, words, kLimits);
  if (run.wasTooSlow)
    throw FileError(dwg, 0, fmt::format("the converter took more than {} s", kLimits.seconds));
  std::error_code error;
  if (run.status == 0 && fs::file_size(dxf_, error) > 0 && !error) return;
  const std::string reason = FirstLine(run.messages.empty() ? run.output : run.messages);
  throw FileError(
      dwg, 0, "the converter " + PathText(program) + " made no DXF" + (reason.empty() ? "" : ": " + reason));
}

}  // namespace hdiplot
