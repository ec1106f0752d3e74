// Loading through the platform's dynamic linker, as a host that knows nothing of the module's inside.
#include "host/hdiplot/module.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstdlib>
#include <system_error>
#include <utility>

#include "host/hdiplot/errors.h"
#include "platform/unicode.h"

namespace hdiplot {

std::filesystem::path DefaultModulePath() {
  if (const char* given = std::getenv("HDI_MODULE"); given != nullptr && *given != '\0') return given;
  std::error_code error;  // leaves the path empty, and the name alone is as good as any
  return std::filesystem::read_symlink("/proc/self/exe", error).replace_filename("PDF.hdi");
}

void Module::Unload::operator()(void* library) const { dlclose(library); }

Module::Module(std::filesystem::path file) : file_(std::move(file)) {
  if (!std::filesystem::exists(file_)) throw InputError(file_, 0, "the driver module is missing");
  // With a directory in its name the file itself is loaded, without a search.
  library_.reset(dlopen(std::filesystem::absolute(file_).c_str(), RTLD_NOW | RTLD_LOCAL));
  if (library_ == nullptr) throw InputError(file_, 0, std::string("cannot be loaded: ") + dlerror());
  itDriver_ = reinterpret_cast<hdi::ItDriverFunction*>(dlsym(library_.get(), "IT_Driver"));
  if (itDriver_ == nullptr) throw InputError(file_, 0, "is no driver module, as it has no IT_Driver");
  itDriver_(hdi::kCreateDrivers, static_cast<hdi::HostDriverList*>(&list_));
  if (list_.drivers.empty()) {
    throw InputError(file_, 0, "made no driver; is pdf.ini in the application's directory?");
  }
}

Module::~Module() {
  // RemoveDriver shortens the list meanwhile.
  for (hdi::HT_Driver* driver : std::vector(list_.drivers)) {
    hdi::DriverRelease release{&list_, driver};
    itDriver_(hdi::kReleaseDriver, &release);
  }
}

hdi::HT_Driver& Module::Driver(std::u16string_view name) const {
  if (name.empty()) return *list_.drivers.front();
  const auto found = std::ranges::find(
      list_.drivers, name, [](hdi::HT_Driver* driver) { return std::u16string_view(driver->GetName()); });
  if (found != list_.drivers.end()) return **found;
  std::string message = "has no device \"" + hdi::ToUtf8(name) + "\"; there are:";
  for (hdi::HT_Driver* driver : list_.drivers) message += " \"" + hdi::ToUtf8(driver->GetName()) + "\"";
  throw InputError(file_, 0, message);
}

}  // namespace hdiplot
