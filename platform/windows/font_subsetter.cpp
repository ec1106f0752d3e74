// The font subsetter on Windows: FontSub.dll, which not every system has.
#include "platform/font_subsetter.h"

#include <windows.h>

#include <array>
#include <string>

namespace hdi {

CreateFontPackageFunction* FindCreateFontPackage() {
  std::array<wchar_t, MAX_PATH> directory;
  const UINT length = GetSystemDirectoryW(directory.data(), static_cast<UINT>(directory.size()));
  if (length == 0 || length >= directory.size()) return nullptr;
  const HMODULE library = LoadLibraryW((directory.data() + std::wstring(L"\\FontSub.dll")).c_str());
  if (library == nullptr) return nullptr;
  return reinterpret_cast<CreateFontPackageFunction*>(
      reinterpret_cast<void*>(GetProcAddress(library, "CreateFontPackage")));
}

}  // namespace hdi
