// The face name of a LOGFONTW.
#pragma once

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "platform/records.h"

namespace hdi {

// Units of a face name that fit a LOGFONTW. Longer names are truncated to this.
inline constexpr size_t kMaxFaceNameUnits = std::size(LOGFONTW{}.lfFaceName) - 1;

// Returns the face name. The field need not be terminated if the name fills it.
[[nodiscard]] inline std::u16string_view FaceName(const LOGFONTW& font) {
  const char16_t* const end = std::find(std::begin(font.lfFaceName), std::end(font.lfFaceName), u'\0');
  return {std::begin(font.lfFaceName), end};
}

// Sets the face name, truncated to fit and padded with zeros.
inline void SetFaceName(LOGFONTW& font, std::u16string_view name) {
  std::fill(std::begin(font.lfFaceName), std::end(font.lfFaceName), u'\0');
  std::copy_n(name.begin(), std::min(name.size(), kMaxFaceNameUnits), font.lfFaceName);
}

// Truncates names to fit a LOGFONTW. Removes empty ones, and those with the '@' that requests vertical
// glyphs.
inline void KeepFaceNames(std::vector<std::u16string>& names) {
  for (std::u16string& name : names) name.resize(std::min(name.size(), kMaxFaceNameUnits));
  std::erase_if(names, [](const auto& name) { return name.empty() || name.front() == u'@'; });
}

}  // namespace hdi
