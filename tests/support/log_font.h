// Makes LOGFONTW records for tests.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "platform/records.h"

namespace hdi {

struct FontStyle {
  int32_t weight = 400;
  bool isItalic = false;
  uint8_t charSet = 1;
  uint8_t pitchAndFamily = 0;
  int32_t height = 0;
};

inline LOGFONTW MakeLogFont(std::u16string_view face, const FontStyle& style = {}) {
  LOGFONTW font{};
  font.lfHeight = style.height;
  font.lfWeight = style.weight;
  font.lfItalic = style.isItalic ? 1 : 0;
  font.lfCharSet = style.charSet;
  font.lfPitchAndFamily = style.pitchAndFamily;
  std::ranges::copy(face, font.lfFaceName);
  return font;
}

}  // namespace hdi
