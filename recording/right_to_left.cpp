#include "recording/right_to_left.h"

#include <algorithm>

namespace hdi {
namespace {

// The blocks from Hebrew to Arabic and their presentation forms.
bool IsRightToLeft(char16_t unit) {
  return (unit >= 0x0590 && unit <= 0x08FF) || (unit >= 0xFB50 && unit <= 0xFDFF) ||
         (unit >= 0xFE70 && unit <= 0xFEFF);
}

}  // namespace

void ReverseRightToLeft(char16_t* text, int32_t count, double* advances) {
  constexpr int32_t kNone = -1;
  int32_t start = kNone;
  const auto reverseTo = [&](int32_t end) {
    std::reverse(text + start, text + end);
    if (advances != nullptr) std::reverse(advances + start, advances + end);
    start = kNone;
  };
  for (int32_t i = 0; i < count; ++i) {
    if (text[i] == u' ') continue;
    if (IsRightToLeft(text[i])) {
      if (start == kNone) start = i;
    } else if (start != kNone) {
      reverseTo(i);
    }
  }
  if (start != kNone) reverseTo(count);
}

}  // namespace hdi
