#include "hdiplot/device/module.h"

#include <algorithm>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "hdiplot/system/errors.h"
#include "hdiplot/system/paths.h"
#include "hdiplot/system/process.h"
#include "platform/unicode.h"

namespace hdiplot {

std::filesystem::path DefaultModulePath() {
  const std::filesystem::path given = PathFromEnvironment("HDI_MODULE");
  return given.empty() ? ExecutableFile().replace_filename("PDF.hdi") : given;
}

Module::Module(std::filesystem::path file) : file_(std::move(file)) {
  std::error_code unknown;
  if (!std::filesystem::exists(file_, unknown)) throw FileError(file_, 0, "the driver module is missing");
  try {
    library_.emplace(file_);
  } catch (const std::runtime_error& error) {
    throw FileError(file_, 0, std::string("cannot be loaded: ") + error.what());
  }
  itDriver_ = library_->Find<hdi::ItDriverFunction>("IT_Driver");
  if (itDriver_ == nullptr) throw FileError(file_, 0, "is not a driver module: it has no IT_Driver");
  itDriver_(hdi::kCreateDrivers, static_cast<hdi::HostDriverList*>(&list_));
  if (list_.drivers.empty()) {
    throw FileError(file_, 0, "created no driver; is pdf.ini in the application's directory?");
  }
}

Module::~Module() {
  // Over a copy: RemoveDriver shortens the list.
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
  throw FileError(file_, 0, message);
}

}  // namespace hdiplot
