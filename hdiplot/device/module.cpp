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

namespace {

// `path` relative to the directory of the executable; empty when there is no such file.
std::filesystem::path InstalledFile(const char* path) {
  std::error_code unknown;
  const std::filesystem::path file = (ExecutableFile().parent_path() / path).lexically_normal();
  return std::filesystem::exists(file, unknown) ? file : std::filesystem::path();
}

}  // namespace

std::filesystem::path DefaultModulePath() {
  const std::filesystem::path given = PathFromEnvironment("HDI_MODULE");
  if (!given.empty()) return given;
  for (const char* path : {"PDF.hdi", HDIPLOT_INSTALLED_MODULE}) {
    const std::filesystem::path file = InstalledFile(path);
    if (!file.empty()) return file;
  }
  return ExecutableFile().replace_filename("PDF.hdi");
}

void FindInstalledData() {
  if (!PathFromEnvironment("HDI_APP_DIR").empty() || !InstalledFile("pdf.ini").empty()) return;
  const std::filesystem::path settings = InstalledFile(HDIPLOT_INSTALLED_DATA "/pdf.ini");
  if (!settings.empty()) SetEnvironmentVariable("HDI_APP_DIR", PathText(settings.parent_path()));
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
