#include "bench/session.h"

#include <dlfcn.h>

#include <cstring>
#include <stdexcept>

namespace bench {
namespace {

class OneDriver final : public hdi::HostDriverList {
 public:
  void HostOwn() override {}
  void AddDriver(hdi::HT_Driver* driver) override {
    if (driver_ == nullptr) driver_ = driver;
  }
  void RemoveDriver(hdi::HT_Driver*) override {}
  [[nodiscard]] hdi::HT_Driver* Get() const { return driver_; }

 private:
  hdi::HT_Driver* driver_ = nullptr;
};

hdi::HT_Driver& LoadDriver() {
  static OneDriver drivers;
  void* module = dlopen(BENCH_DRIVER_PATH, RTLD_NOW);
  if (module == nullptr) throw std::runtime_error(dlerror());
  const auto itDriver = reinterpret_cast<hdi::ItDriverFunction*>(dlsym(module, "IT_Driver"));
  if (itDriver == nullptr) throw std::runtime_error(dlerror());
  itDriver(hdi::kCreateDrivers, static_cast<hdi::HostDriverList*>(&drivers));
  if (drivers.Get() == nullptr) throw std::runtime_error("no device in the device list (pdf.ini)");
  return *drivers.Get();
}

// Sets the driver's part directly; the snapshot marks the public part as resolved.
void SetSheet(hdi::DriverDevMode& record, const Sheet& sheet) {
  record.dm.dmPrintQuality = static_cast<int16_t>(kDotsPerInch);
  record.paperWidth = sheet.widthTenths;
  record.paperHeight = sheet.heightTenths;
  record.marginLeft = record.marginRight = record.marginBottom = 0;
  record.marginTop = sheet.TopMarginTenths();
  record.openAfterPlot = 0;
  std::memcpy(record.snapshot, &record.dm, sizeof record.dm);
}

}  // namespace

std::u16string Widen(std::string_view ascii) { return {ascii.begin(), ascii.end()}; }

Session::Session(const Sheet& sheet) {
  device_.driver = &LoadDriver();
  SetSheet(*device_.driver->GetDevModePointer(), sheet);
  device_.driver->OpenDevice(&device_);
}

Session::~Session() { device_.driver->CloseDevice(&device_); }

void Session::StartDocument(const std::string& path) {
  const std::u16string output = Widen(path);
  const hdi::DOCINFOW info = {sizeof info, u"bench", output.c_str(), nullptr, 0};
  if (Call<hdi::entry::StartDoc>(hdi::Position::kStartDoc, &info) != 1) {
    throw std::runtime_error("cannot start the document");
  }
}

void Session::EndDocument() { Call<hdi::entry::EndDoc>(hdi::Position::kEndDoc); }

}  // namespace bench
