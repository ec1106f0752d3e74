#include "hdiplot/system/paths.h"

#include <algorithm>
#include <array>

#include "hdiplot/system/ascii_case.h"
#include "hdiplot/system/wildcard.h"
#include "platform/environment.h"
#include "platform/unicode.h"
#include "platform/windows/wide.h"

namespace hdiplot {

namespace fs = std::filesystem;

namespace {

// A file name with such a stem, whatever its extension, is the device's.
constexpr std::array<std::string_view, 6> kDevices = {"con", "prn", "aux", "nul", "conin$", "conout$"};

bool IsPort(std::string_view word) {
  if (!word.starts_with("com") && !word.starts_with("lpt")) return false;
  const std::string_view number = word.substr(3);
  // Superscript digits of a code page count, too.
  if (number == "\u00b9" || number == "\u00b2" || number == "\u00b3") return true;
  return number.size() == 1 && number[0] >= '1' && number[0] <= '9';
}

}  // namespace

std::string PathText(const fs::path& path) {
  return hdi::ToUtf8({hdi::Units(path.c_str()), path.native().size()});
}

fs::path PathFromUtf8(std::string_view text) { return hdi::Wide(hdi::ToUtf16(text)); }

fs::path PathFromEnvironment(const char* name) {
  return hdi::Wide(hdi::EnvironmentVariable(hdi::ToUtf16(name)));
}

bool NamesDevice(const fs::path& path) {
  const std::string whole = PathText(path);
  if (whole.starts_with("\\\\.\\") || whole.starts_with("//./")) return true;
  const std::string name = LowerCase(PathText(path.filename()));
  std::string_view word = std::string_view(name).substr(0, name.find('.'));
  while (word.ends_with(' ')) word.remove_suffix(1);
  return std::ranges::find(kDevices, word) != kDevices.end() || IsPort(word);
}

std::vector<fs::path> FilesNamed(std::string_view argument) {
  const fs::path path = PathFromUtf8(argument);
  const std::string pattern = PathText(path.filename());
  if (pattern.find_first_of("*?") == std::string::npos) return {path};
  std::error_code ignored;
  std::vector<fs::path> files =
      NamesMatching(path.has_parent_path() ? path.parent_path() : fs::path("."), pattern, ignored);
  for (fs::path& file : files) file = fs::path(path).replace_filename(file);
  if (files.empty()) files.push_back(path);
  return files;
}

}  // namespace hdiplot
