// CPDFDriver: a configured PDF device. Holds the device's settings and the table of entry points through
// which the host plots.
#pragma once

#include <cstdint>
#include <string>

#include "engine/compression.h"
#include "platform/border.h"

namespace hdi {

// Not final: the driver calls its own virtual operations through the table, which a host may have patched;
// for a final class the compiler would call them directly.
class CPDFDriver : public HT_Driver {
 public:
  // A device with its settings in `section` of `iniFile`. The record holds the defaults.
  CPDFDriver(const std::u16string& iniFile, const std::u16string& section);
  // For hosts that create a driver by name. Reads no settings.
  explicit CPDFDriver(std::u16string name);
  CPDFDriver(const CPDFDriver&) = delete;
  CPDFDriver& operator=(const CPDFDriver&) = delete;
  // Frees the default record's block. Does not close an open device.
  ~CPDFDriver();

  int32_t QueryInterface(const GUID& iid, HT_Driver** out) override;
  const char16_t* GetName() override;
  const char16_t* GetModuleName() override;
  const char16_t* GetVersion() override;
  int32_t ShowProperties(void* parentWindow) override;
  int32_t ReservedA() override;
  int32_t SetDevMode(void* globalHandle) override;
  int32_t GetDevMode(void* globalHandle) override;
  int32_t ReservedB() override;
  int32_t ReservedC() override;
  int32_t OpenDevice(HostDevice* device) override;
  int32_t CloseDevice(HostDevice* device) override;
  void* GetDefaultDevMode() override;
  int32_t DeviceCapabilities(uint16_t capability, uint8_t* output, DriverDevMode* devMode) override;
  int32_t CreatePaper(const PaperSize& paper, int32_t* id, DriverDevMode* devMode) override;
  int32_t SetCustomPaper(const char16_t* name, double width, double height, double left, double right,
                         double top, double bottom) override;
  int32_t ModifyPaper(const PaperSize& paper, int32_t* id, DriverDevMode* devMode) override;
  int32_t DeletePaper(int32_t id) override;
  int32_t ReservedD() override;
  int32_t SetOption(uint32_t id, int64_t value) override;
  void ReservedE() override;
  uint32_t GetBackgroundColor() override;
  void NormalizeDevMode(DriverDevMode* record) override;
  const char16_t* GetPaperFile() override;
  DriverDevMode* GetDevModePointer() override;
  HT_Driver* Destroy(uint32_t flags) override;

  // For driver/job.cpp. StreamCompression reads the device's section of the settings file.
  [[nodiscard]] engine::Compression StreamCompression() const;
  [[nodiscard]] int32_t SaveNotHint() const { return saveNotHint_; }
  void SetSaveNotHint(int32_t value) { saveNotHint_ = value; }
  // The address of the device field, for entries that take it.
  [[nodiscard]] HostDevice** DeviceField() { return &device_; }

 private:
  std::u16string name_;
  DriverDevMode devMode_{};
  HostDevice* device_ = nullptr;  // set by OpenDevice, never reset
  void* defaultDevModeHandle_ = nullptr;
  std::u16string settingsFile_;
  std::u16string paperFile_;
  std::u16string settingsSection_;
  PaperSize customPaper_{};
  int32_t saveNotHint_ = 0;
  DeviceTable deviceTable_{};
};

}  // namespace hdi
