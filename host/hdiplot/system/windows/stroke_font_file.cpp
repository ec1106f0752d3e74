// The fonts lie in a folder beside the executable, unless the environment names another one.
#include "host/hdiplot/system/stroke_font_file.h"

#include <windows.h>

#include "host/hdiplot/system/paths.h"
#include "host/hdiplot/system/process.h"

namespace hdiplot {

namespace {

// Empty when the file's name has characters that the code page has not.
std::string InSystemCodePage(const std::wstring& text) {
  std::string bytes(text.size() * 2, '\0');
  BOOL isInexact = FALSE;
  const int length =
      WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, text.data(), static_cast<int>(text.size()),
                          bytes.data(), static_cast<int>(bytes.size()), nullptr, &isInexact);
  bytes.resize(isInexact == FALSE && length > 0 ? static_cast<size_t>(length) : 0);
  return bytes;
}

// The name that the system gave the file for programs of old; empty when it has none.
std::wstring ShortName(const std::wstring& file) {
  std::wstring name(GetShortPathNameW(file.c_str(), nullptr, 0), L'\0');
  name.resize(GetShortPathNameW(file.c_str(), name.data(), static_cast<DWORD>(name.size())));
  return name;
}

std::filesystem::path Folder() {
  const std::filesystem::path given = PathFromEnvironment("HERSHEY_FONTS_DIR");
  return given.empty() ? ExecutableFile().replace_filename("hershey-fonts") : given;
}

}  // namespace

// The library opens files by names in the system's code page.
hershey_font* LoadHersheyFont(const std::string& name) {
  const std::filesystem::path file = Folder() / (name + ".jhf");
  std::string bytes = InSystemCodePage(file.native());
  if (bytes.empty()) bytes = InSystemCodePage(ShortName(file.native()));
  return bytes.empty() ? nullptr : hershey_jhf_font_load(bytes.c_str());
}

}  // namespace hdiplot
