// The application's and the user's directory.
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "platform/host_library.h"
#include "platform/unicode.h"

namespace {

// The folder of this system below the place where all applications keep the user's data.
constexpr const char* kDataFolder = "hdi";

std::string Environment(const char* variable) {
  const char* value = std::getenv(variable);
  return value == nullptr ? "" : value;
}

std::string ApplicationDirectory() {
  std::string directory = Environment("HDI_APP_DIR");
  if (directory.empty()) {
    std::error_code error;
    directory = std::filesystem::read_symlink("/proc/self/exe", error).parent_path().string();
  }
  while (directory.ends_with('/')) directory.pop_back();
  return directory;
}

std::string HomeDirectory() {
  std::string home = Environment("HOME");
  if (!home.empty()) return home;
  const passwd* user = getpwuid(getuid());
  return user == nullptr || user->pw_dir == nullptr ? "." : user->pw_dir;
}

std::string UserDirectory() {
  std::string directory = Environment("HDI_USER_DIR");
  if (directory.empty()) {
    // The XDG base directory rules: a relative path in the variable is to be ignored.
    const std::string data = Environment("XDG_DATA_HOME");
    directory = (data.starts_with('/') ? data : HomeDirectory() + "/.local/share") + '/' + kDataFolder;
  }
  if (!directory.ends_with('/')) directory.push_back('/');
  return directory;
}

}  // namespace

const char16_t* OrvaneGetAppFullPath() {
  static std::u16string path;
  path = hdi::ToUtf16(ApplicationDirectory());
  return path.c_str();
}

const char16_t* OrvaneGetAppDataPathWithBackslash() {
  static std::u16string path;
  path = hdi::ToUtf16(UserDirectory());
  return path.c_str();
}
