// The process's environment on Linux.
#include "platform/environment.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string_view>

#include "platform/unicode.h"

namespace hdi {
namespace {

std::string Variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

std::string HomeDirectory() {
  std::string home = Variable("HOME");
  if (!home.empty()) return home;
  const passwd* user = getpwuid(getuid());
  return user == nullptr || user->pw_dir == nullptr ? "." : user->pw_dir;
}

}  // namespace

std::u16string ProcessFileName() {
  std::error_code error;
  std::string path = std::filesystem::read_symlink("/proc/self/exe", error).string();
  // The executable was replaced while running.
  constexpr std::string_view kDeleted = " (deleted)";
  if (path.ends_with(kDeleted) && access(path.c_str(), F_OK) != 0) path.resize(path.size() - kDeleted.size());
  return ToUtf16(path);
}

std::u16string EnvironmentVariable(const std::u16string& name) {
  return ToUtf16(Variable(ToUtf8(name).c_str()));
}

std::u16string UserDataDirectory() {
  // A relative path in the variable must be ignored.
  const std::string data = Variable("XDG_DATA_HOME");
  return ToUtf16(data.starts_with('/') ? data : HomeDirectory() + "/.local/share");
}

}  // namespace hdi
