// The registry lists the fonts of the system and of the user. The name of a value is that of the font, or of
// all fonts in a collection, "MS Gothic & MS UI Gothic (TrueType)"; its data is the file, with or without a
// path.
#include "hdiplot/system/font_files.h"

#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <type_traits>

#include "hdiplot/system/names.h"
#include "hdiplot/system/paths.h"
#include "hdiplot/system/process.h"

namespace hdiplot {

namespace {

constexpr const wchar_t* kFontList = L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Fonts";

struct CloseKey {
  void operator()(HKEY key) const { RegCloseKey(key); }
};
using Key = std::unique_ptr<std::remove_pointer_t<HKEY>, CloseKey>;

Key OpenFontList(HKEY root) {
  HKEY opened = nullptr;
  return Key(RegOpenKeyExW(root, kFontList, 0, KEY_QUERY_VALUE, &opened) == ERROR_SUCCESS ? opened : nullptr);
}

// The name of the first font, without the font type.
std::string FirstFont(std::string valueName) {
  valueName.resize(std::min(valueName.find(" & "), valueName.size()));
  if (valueName.ends_with(')')) valueName.resize(std::min(valueName.rfind(" ("), valueName.size()));
  return valueName;
}

std::string FontInList(HKEY list, std::string_view fileName) {
  DWORD longestName = 0;
  DWORD longestValue = 0;  // in bytes
  RegQueryInfoKeyW(list, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &longestName,
                   &longestValue, nullptr, nullptr);
  std::wstring name(longestName + 1, L'\0');
  std::wstring value(longestValue / sizeof(wchar_t) + 1, L'\0');
  for (DWORD i = 0;; ++i) {
    auto nameUnits = static_cast<DWORD>(name.size());
    auto valueBytes = static_cast<DWORD>(value.size() * sizeof(wchar_t));
    DWORD type = REG_NONE;
    const LSTATUS status = RegEnumValueW(list, i, name.data(), &nameUnits, nullptr, &type,
                                         reinterpret_cast<BYTE*>(value.data()), &valueBytes);
    if (status != ERROR_SUCCESS) return {};
    // '@' marks the variant with rotated glyphs for vertical text.
    if (type != REG_SZ || name.starts_with(L'@')) continue;
    std::wstring path = value.substr(0, valueBytes / sizeof(wchar_t));
    path.resize(std::min(path.find(L'\0'), path.size()));
    if (!IsSameName(PathText(std::filesystem::path(path).filename()), fileName)) continue;
    return FirstFont(PathText(name.substr(0, nameUnits)));
  }
}

}  // namespace

std::string FontInFile(std::string_view name) {
  for (HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
    const Key list = OpenFontList(root);
    if (std::string font = list ? FontInList(list.get(), name) : ""; !font.empty()) return font;
  }
  return {};
}

// The fonts are installed beside the executable.
std::filesystem::path HersheyFontFolder() {
  const std::filesystem::path given = PathFromEnvironment("HERSHEY_FONTS_DIR");
  return given.empty() ? ExecutableFile().replace_filename("hershey-fonts") : given;
}

}  // namespace hdiplot
