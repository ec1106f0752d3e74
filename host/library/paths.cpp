// The application's and the user's directory.
#include <string>

#include "platform/environment.h"
#include "platform/files.h"
#include "platform/host_library.h"

namespace {

// The subfolder of the applications' user data directory.
constexpr const char16_t* kDataFolder = u"hdi";

// A slash separates directories on every platform.
bool EndsInSeparator(const std::u16string& path) {
  return path.ends_with(u'/') || path.ends_with(hdi::kPathSeparator);
}

std::u16string ApplicationDirectory() {
  std::u16string directory = hdi::EnvironmentVariable(u"HDI_APP_DIR");
  if (directory.empty()) {
    directory = hdi::ProcessFileName();
    const size_t separator = directory.rfind(hdi::kPathSeparator);
    directory.resize(separator == directory.npos ? 0 : separator);
  }
  while (EndsInSeparator(directory)) directory.pop_back();
  return directory;
}

std::u16string UserDirectory() {
  std::u16string directory = hdi::EnvironmentVariable(u"HDI_USER_DIR");
  if (directory.empty()) directory = hdi::UserDataDirectory() + hdi::kPathSeparator + kDataFolder;
  if (!EndsInSeparator(directory)) directory.push_back(hdi::kPathSeparator);
  return directory;
}

}  // namespace

const char16_t* OrvaneGetAppFullPath() {
  static std::u16string path;
  path = ApplicationDirectory();
  return path.c_str();
}

const char16_t* OrvaneGetAppDataPathWithBackslash() {
  static std::u16string path;
  path = UserDirectory();
  return path.c_str();
}
