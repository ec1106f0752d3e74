// Paths below the host's directories.
#include "driver/settings_paths.h"

#include "platform/files.h"
#include "platform/host_library.h"

namespace hdi {
namespace {

// An unknown path counts as empty.
std::u16string OrEmpty(const char16_t* path) { return path == nullptr ? std::u16string() : path; }

}  // namespace

std::u16string InApplicationDirectory(const std::u16string& name) {
  return OrEmpty(OrvaneGetAppFullPath()) + kPathSeparator + name;
}

std::u16string InUserDirectory(const std::u16string& name) {
  return OrEmpty(OrvaneGetAppDataPathWithBackslash()) + name;
}

std::u16string ListFile() { return InApplicationDirectory(u"pdf.ini"); }

std::u16string UserSettingsFile() { return InUserDirectory(u"PDF.ini"); }

}  // namespace hdi
