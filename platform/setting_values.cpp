// Values of settings.
#include <algorithm>
#include <limits>

#include "platform/settings_file.h"

namespace hdi {

int32_t SettingToInt(const std::u16string& text) {
  auto next = std::find_if(text.begin(), text.end(),
                           [](char16_t unit) { return unit != u' ' && (unit < u'\t' || unit > u'\r'); });
  const bool negative = next != text.end() && *next == u'-';
  if (next != text.end() && (*next == u'-' || *next == u'+')) ++next;
  int64_t number = 0;
  for (; next != text.end() && *next >= u'0' && *next <= u'9'; ++next) {
    // One above the maximum is enough for the minimum and keeps the sum from overflowing.
    constexpr int64_t kLimit = int64_t{std::numeric_limits<int32_t>::max()} + 1;
    number = std::min(number * 10 + (*next - u'0'), kLimit);
  }
  if (negative) number = -number;
  return static_cast<int32_t>(std::min<int64_t>(number, std::numeric_limits<int32_t>::max()));
}

}  // namespace hdi
