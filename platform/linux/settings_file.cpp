// Settings files on Linux.
#include "platform/settings_file.h"

#include "platform/profile.h"

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
  if (profile.Load(file) == LoadResult::kUnreadable) return false;
  return profile.Set(section, key, value) && profile.Save(file);
}

std::vector<std::u16string> SettingSections(const std::u16string& file) {
  Profile profile;
  profile.Load(file);
  std::vector<std::u16string> names;
  for (const Profile::Line& line : profile.Lines()) {
    if (line.kind == Profile::LineKind::kSection) names.push_back(line.name);
  }
  return names;
}

}  // namespace hdi
