// The process's environment on Windows.
#include "platform/environment.h"

#include <windows.h>

#include "platform/windows/wide.h"

namespace hdi {

std::u16string ProcessFileName() {
  std::u16string path(MAX_PATH, u'\0');
  for (;;) {
    const DWORD size = static_cast<DWORD>(path.size());
    const DWORD length = GetModuleFileNameW(nullptr, Wide(path.data()), size);
    path.resize(length);
    if (length < size) return path;
    path.resize(size * size_t{2});  // the path was truncated
  }
}

std::u16string EnvironmentVariable(const std::u16string& name) {
  std::u16string value;
  for (;;) {
    const DWORD size = static_cast<DWORD>(value.size());
    const DWORD length = GetEnvironmentVariableW(Wide(name), Wide(value.data()), size);
    value.resize(length);  // includes the terminator if the buffer is too small
    if (length == 0 || length < size) return value;
  }
}

std::u16string UserDataDirectory() {
  std::u16string directory = EnvironmentVariable(u"APPDATA");
  while (directory.ends_with(u'\\')) directory.pop_back();
  return directory.empty() ? u"." : directory;
}

}  // namespace hdi
