// Conversion to the engine's wide strings. Private to this folder.
#pragma once

#include <string_view>

#include "core/fxcrt/widestring.h"

namespace hdi::engine {

[[nodiscard]] WideString ToWideString(std::u16string_view text);

// The text up to its first NUL.
[[nodiscard]] inline std::u16string_view UpToZero(std::u16string_view text) {
  return text.substr(0, text.find(u'\0'));
}

}  // namespace hdi::engine
