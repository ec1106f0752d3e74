// Settings files on Windows: the platform's private profiles.
#include "platform/settings_file.h"

#include <windows.h>

#include <array>
#include <filesystem>

#include "platform/windows/wide.h"

namespace hdi {
namespace {

constexpr size_t kBufferSize = 256;  // units of a value, including the terminator

// Whether the format can represent them. If not, the file is not touched.
bool FitsForm(const std::u16string& section, const std::u16string& key, const std::u16string& value) {
  constexpr const char16_t* kLineBreaks = u"\r\n";
  const bool broken = section.find_first_of(kLineBreaks) != section.npos ||
                      key.find_first_of(kLineBreaks) != key.npos ||
                      value.find_first_of(kLineBreaks) != value.npos;
  const bool keyIsOther = key.starts_with(u';') || key.starts_with(u'[') || key.find(u'=') != key.npos;
  return !broken && !keyIsOther;
}

// Returns the value as written: quoted if it starts or ends with characters that reading drops.
std::u16string Quoted(const std::u16string& value) {
  constexpr std::u16string_view kDropped = u" \t\"'";
  const bool needed = !value.empty() && (kDropped.find(value.front()) != kDropped.npos ||
                                         kDropped.find(value.back()) != kDropped.npos);
  return needed ? u'"' + value + u'"' : value;
}

}  // namespace

std::u16string ReadSetting(const std::u16string& section, const std::u16string& key,
                           const std::u16string& fallback, const std::u16string& file) {
  std::array<char16_t, kBufferSize> buffer = {};
  const DWORD length = GetPrivateProfileStringW(Wide(section), Wide(key), Wide(fallback), Wide(buffer.data()),
                                                kBufferSize, Wide(file));
  return {buffer.data(), length};
}

bool WriteSetting(const std::u16string& section, const std::u16string& key, const std::u16string& value,
                  const std::u16string& file) {
  if (!FitsForm(section, key, value)) return false;
  std::error_code error;
  std::filesystem::create_directories(std::filesystem::path(Wide(file)).parent_path(), error);
  if (!WritePrivateProfileStringW(Wide(section), Wide(key), Wide(Quoted(value)), Wide(file))) return false;
  // A file in the system's code page may not be able to represent a character.
  return ReadSetting(section, key, u"", file) == value.substr(0, kBufferSize - 1);
}

std::vector<std::u16string> SettingSections(const std::u16string& file) {
  // Zero-terminated names and a final terminator. A truncated list ends two units before the buffer's end.
  std::u16string list(4096, u'\0');
  for (;;) {
    const DWORD size = static_cast<DWORD>(list.size());
    const DWORD length = GetPrivateProfileSectionNamesW(Wide(list.data()), size, Wide(file));
    if (length + 2 < size) {
      list.resize(length);
      break;
    }
    list.resize(size * size_t{2});
  }
  std::vector<std::u16string> names;
  for (size_t at = 0; at < list.size(); at += names.back().size() + 1) {
    names.emplace_back(list.c_str() + at);
    if (names.back().empty()) {
      names.pop_back();
      break;
    }
  }
  return names;
}

}  // namespace hdi
