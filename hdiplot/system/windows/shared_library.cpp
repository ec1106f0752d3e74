#include "hdiplot/system/shared_library.h"

#include <windows.h>

#include <cstdint>
#include <stdexcept>
#include <string>

#include "hdiplot/system/windows/error_text.h"

namespace hdiplot {

namespace {

std::string LoadError(uint32_t error) {
  return error == ERROR_MOD_NOT_FOUND ? "a library that it needs is missing" : ErrorText(error);
}

}  // namespace

// An absolute path is loaded without a search; its dependencies are searched beside it first.
SharedLibrary::SharedLibrary(const std::filesystem::path& file)
    : library_(LoadLibraryExW(std::filesystem::absolute(file).make_preferred().c_str(), nullptr,
                              LOAD_WITH_ALTERED_SEARCH_PATH)) {
  if (library_ == nullptr) throw std::runtime_error(LoadError(GetLastError()));
}

SharedLibrary::Anything* SharedLibrary::Address(const char* name) const {
  return reinterpret_cast<Anything*>(GetProcAddress(static_cast<HMODULE>(library_.get()), name));
}

void SharedLibrary::Unload::operator()(void* library) const { FreeLibrary(static_cast<HMODULE>(library)); }

}  // namespace hdiplot
