// File names are bytes, UTF-8 by convention.
#include "hdiplot/system/paths.h"

#include <cstdlib>

namespace hdiplot {

std::string PathText(const std::filesystem::path& path) { return path.string(); }

std::filesystem::path PathFromUtf8(std::string_view text) { return text; }

std::filesystem::path PathFromEnvironment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

bool NamesDevice(const std::filesystem::path& path) { return path.native().starts_with("/dev/"); }

std::vector<std::filesystem::path> FilesNamed(std::string_view argument) { return {argument}; }

}  // namespace hdiplot
