// Derives the application's name from the process's file.
#include "driver/creator.h"

#include "platform/environment.h"
#include "platform/files.h"

namespace hdi {
namespace {

constexpr std::u16string_view kUnknown = u"CAD";

}  // namespace

#if defined(_WIN32)

std::u16string CreatorOf(std::u16string_view path) {
  const size_t separator = path.rfind(kPathSeparator);
  const size_t dot = path.rfind(u'.');
  if (separator == std::u16string_view::npos || dot == std::u16string_view::npos)
    return std::u16string(kUnknown);
  if (dot < separator) return {};
  return std::u16string(path.substr(separator + 1, dot - separator - 1));
}

#else

std::u16string CreatorOf(std::u16string_view path) {
  const std::u16string_view base = path.substr(path.rfind(kPathSeparator) + 1);  // npos + 1 is 0
  if (base.empty()) return std::u16string(kUnknown);
  return std::u16string(base.substr(0, base.rfind(u'.')));
}

#endif

std::u16string CreatorName() { return CreatorOf(ProcessFileName()); }

}  // namespace hdi
