// Loading the driver module, and the drivers that it creates.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hdiplot/system/shared_library.h"
#include "platform/border.h"

namespace hdiplot {

// $HDI_MODULE, or PDF.hdi beside the executable, or the installed one.
[[nodiscard]] std::filesystem::path DefaultModulePath();

// Sets $HDI_APP_DIR to the directory of the installed pdf.ini, unless it is set or pdf.ini is beside the
// executable. To be called before a module is loaded.
void FindInstalledData();

// A loaded module with all its drivers. The destructor has the module release them and unloads it.
class Module {
 public:
  // Throws FileError when the file is not a driver module or creates no driver.
  explicit Module(std::filesystem::path file);
  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;
  ~Module();

  // The driver whose GetName is `name`, or the first one for an empty name. Throws FileError, which lists the
  // names, when there is no such driver.
  [[nodiscard]] hdi::HT_Driver& Driver(std::u16string_view name) const;

 private:
  // The module calls AddDriver for each driver that it creates and RemoveDriver with the address of each that
  // it has destroyed.
  class DriverList final : public hdi::HostDriverList {
   public:
    DriverList() = default;
    DriverList(const DriverList&) = delete;
    DriverList& operator=(const DriverList&) = delete;
    virtual ~DriverList() = default;  // after the border's slots

    void HostOwn() override {}
    void AddDriver(hdi::HT_Driver* driver) override { drivers.push_back(driver); }
    void RemoveDriver(hdi::HT_Driver* driver) override { std::erase(drivers, driver); }

    std::vector<hdi::HT_Driver*> drivers;  // in the module's order
  };

  std::filesystem::path file_;
  std::optional<SharedLibrary> library_;
  hdi::ItDriverFunction* itDriver_ = nullptr;
  DriverList list_;
};

}  // namespace hdiplot
