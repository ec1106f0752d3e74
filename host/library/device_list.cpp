// The device list: the section names of a settings file.
#include <algorithm>
#include <string>
#include <vector>

#include "platform/host_library.h"
#include "platform/settings_file.h"
#include "platform/unicode.h"

namespace {

// Returns the section names in file order. Repeated names are left out, since only the first section of a
// name is read, and so are empty ones, which would end the list.
std::vector<std::u16string> SectionNames(const char16_t* iniFile) {
  std::vector<std::u16string> names;
  for (const std::u16string& section : hdi::SettingSections(iniFile)) {
    const bool known = std::any_of(names.begin(), names.end(),
                                   [&](const std::u16string& name) { return hdi::SameName(name, section); });
    if (!known && !section.empty()) names.push_back(section);
  }
  return names;
}

}  // namespace

int32_t HT_ListCloseDriver(char16_t* buffer, int32_t capacity, const char16_t* iniFile) {
  const std::vector<std::u16string> names =
      iniFile == nullptr ? std::vector<std::u16string>() : SectionNames(iniFile);
  size_t needed = 0;
  for (const std::u16string& name : names) needed += name.size() + 1;
  if (needed > 0) ++needed;

  if (buffer != nullptr && capacity > 0) {
    const size_t room = static_cast<size_t>(capacity);
    std::u16string list;
    for (const std::u16string& name : names) {
      if (list.size() + name.size() + 2 > room) break;  // whole names only
      list.append(name).push_back(u'\0');
    }
    list.append(list.empty() ? 2 : 1, u'\0');
    std::copy_n(list.begin(), std::min(list.size(), room), buffer);
  }
  return static_cast<int32_t>(needed);
}
