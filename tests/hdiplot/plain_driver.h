// A driver that does nothing. Drivers of tests override the slots that they need.
#pragma once

#include "platform/border.h"

class PlainDriver : public hdi::HT_Driver {
 public:
  virtual ~PlainDriver() = default;  // after the border's slots

  int32_t QueryInterface(const hdi::GUID&, hdi::HT_Driver**) override { return 0; }
  const char16_t* GetName() override { return u"plain"; }
  const char16_t* GetModuleName() override { return u""; }
  const char16_t* GetVersion() override { return u""; }
  int32_t ShowProperties(void*) override { return 1; }
  int32_t ReservedA() override { return 1; }
  int32_t SetDevMode(void*) override { return 1; }
  int32_t GetDevMode(void*) override { return 1; }
  int32_t ReservedB() override { return 1; }
  int32_t ReservedC() override { return 1; }
  int32_t OpenDevice(hdi::HostDevice* device) override {
    device->table = &table;
    return 1;
  }
  int32_t CloseDevice(hdi::HostDevice*) override { return 1; }
  void* GetDefaultDevMode() override { return nullptr; }
  int32_t DeviceCapabilities(uint16_t, uint8_t*, hdi::DriverDevMode*) override { return 0; }
  int32_t CreatePaper(const hdi::PaperSize&, int32_t*, hdi::DriverDevMode*) override { return 1; }
  int32_t SetCustomPaper(const char16_t*, double, double, double, double, double, double) override {
    return 1;
  }
  int32_t ModifyPaper(const hdi::PaperSize&, int32_t*, hdi::DriverDevMode*) override { return 1; }
  int32_t DeletePaper(int32_t) override { return 1; }
  int32_t ReservedD() override { return 0; }
  int32_t SetOption(uint32_t, int64_t) override { return 1; }
  void ReservedE() override {}
  uint32_t GetBackgroundColor() override { return 0; }
  void NormalizeDevMode(hdi::DriverDevMode*) override {}
  const char16_t* GetPaperFile() override { return u""; }
  hdi::DriverDevMode* GetDevModePointer() override { return &record; }
  hdi::HT_Driver* Destroy(uint32_t) override { return this; }

  template <typename Function>
  void Set(hdi::Position position, Function* function) {
    table.positions[static_cast<size_t>(position)] = reinterpret_cast<hdi::DeviceTable::Entry>(function);
  }

  hdi::DriverDevMode record{};
  hdi::DeviceTable table{};
};
