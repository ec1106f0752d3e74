// Settings files on Linux.
#include "platform/settings_file.h"

#include <algorithm>
#include <limits>

#include "platform/linux/profile.h"

namespace hdi {
namespace {

// The platform's buffer of 256 units, less the terminator.
constexpr size_t kLongestValue = 255;

}  // namespace

std::u16string ReadSetting(const std::u16string& section, const std::u16string& key,
                           const std::u16string& fallback, const std::u16string& file) {
  Profile profile;
  profile.Load(file);
  return profile.Find(section, key).value_or(fallback).substr(0, kLongestValue);
}

bool WriteSetting(const std::u16string& section, const std::u16string& key, const std::u16string& value,
                  const std::u16string& file) {
  Profile profile;
  if (profile.Load(file) == Profile::LoadResult::kUnreadable) return false;
  return profile.Set(section, key, value) && profile.Save(file);
}

int32_t SettingToInt(const std::u16string& text) {
  auto next = std::find_if(text.begin(), text.end(),
                           [](char16_t unit) { return unit != u' ' && (unit < u'\t' || unit > u'\r'); });
  const bool negative = next != text.end() && *next == u'-';
  if (next != text.end() && (*next == u'-' || *next == u'+')) ++next;
  int64_t number = 0;
  for (; next != text.end() && *next >= u'0' && *next <= u'9'; ++next) {
    // One above the largest is enough for the smallest, and keeps the sum far from an overflow.
    constexpr int64_t kLimit = int64_t{std::numeric_limits<int32_t>::max()} + 1;
    number = std::min(number * 10 + (*next - u'0'), kLimit);
  }
  if (negative) number = -number;
  return static_cast<int32_t>(std::min<int64_t>(number, std::numeric_limits<int32_t>::max()));
}

}  // namespace hdi
