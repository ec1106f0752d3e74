#include "hdiplot/system/shared_library.h"

#include <dlfcn.h>

#include <stdexcept>

namespace hdiplot {

// A path with a directory is loaded without a search.
SharedLibrary::SharedLibrary(const std::filesystem::path& file)
    : library_(dlopen(std::filesystem::absolute(file).c_str(), RTLD_NOW | RTLD_LOCAL)) {
  if (library_ == nullptr) throw std::runtime_error(dlerror());
}

SharedLibrary::Anything* SharedLibrary::Address(const char* name) const {
  return reinterpret_cast<Anything*>(dlsym(library_.get(), name));
}

void SharedLibrary::Unload::operator()(void* library) const { dlclose(library); }

}  // namespace hdiplot
