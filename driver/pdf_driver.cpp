// The driver object: identity, settings and options. Paper is in driver/paper.cpp, the device table in
// driver/device_table.cpp.
#include "driver/pdf_driver.h"

#include <cstring>
#include <new>
#include <utility>

#include "driver/compression_setting.h"
#include "driver/settings_paths.h"
#include "driver/settings_record.h"
#include "platform/companion.h"
#include "platform/settings_file.h"

namespace hdi {
namespace {

constexpr uint32_t kMovableZeroed = 0x42;  // GMEM_MOVEABLE, GMEM_ZEROINIT
constexpr uint32_t kOptionLayers = 180;
constexpr uint32_t kOptionOpenAfterPlot = 189;
constexpr uint32_t kFreeObject = 1;

// Locks the record in a global memory block. Returns null if the block cannot be locked or holds another
// driver's record; in the second case the block stays locked, which hosts rely on.
DriverDevMode* LockMatchingRecord(void* globalHandle, const DriverDevMode& own) {
  auto* record = static_cast<DriverDevMode*>(GlobalLock(globalHandle));
  if (record == nullptr || record->dm.dmDriverExtra != own.dm.dmDriverExtra) return nullptr;
  return record;
}

}  // namespace

CPDFDriver::CPDFDriver(const std::u16string& iniFile, const std::u16string& section)
    : name_(ReadSetting(section, u"Name", u"DWG to PDF 1.0", iniFile)) {
  const std::u16string privateFile = ReadSetting(section, u"PrivateFile", u"", iniFile);
  settingsFile_ = privateFile.empty() ? iniFile : InApplicationDirectory(privateFile);
  settingsSection_ = privateFile.empty() ? section : u"General";
  // Two defaults are full paths where they make no sense: a missing "PaperFile" results in a path to no file,
  // and a missing "PDFSaveNotHint" in a text that counts as 0 unless it starts with digits.
  paperFile_ =
      InUserDirectory(ReadSetting(section, u"PaperFile", InApplicationDirectory(u"PDF.ini"), iniFile));
  saveNotHint_ = SettingToInt(ReadSetting(section, u"PDFSaveNotHint", UserSettingsFile(), iniFile));
  devMode_ = DefaultDevMode();
}

CPDFDriver::CPDFDriver(std::u16string name)
    : name_(std::move(name)), devMode_(DefaultDevMode()), settingsFile_(InApplicationDirectory(u"PDF.ini")) {}

CPDFDriver::~CPDFDriver() {
  if (defaultDevModeHandle_ != nullptr) GlobalFree(defaultDevModeHandle_);
}

engine::Compression CPDFDriver::StreamCompression() const {
  return CompressionSetting(settingsSection_, settingsFile_);
}

int32_t CPDFDriver::QueryInterface(const GUID& iid, HT_Driver** out) {
  if (std::memcmp(&iid, &kDriverInterfaceId, sizeof iid) != 0) return 0;
  if (out != nullptr) *out = this;
  return 1;
}

const char16_t* CPDFDriver::GetName() { return name_.c_str(); }

const char16_t* CPDFDriver::GetModuleName() { return u"PDF.hdi"; }

const char16_t* CPDFDriver::GetVersion() { return u"4.00"; }

int32_t CPDFDriver::ShowProperties(void* parentWindow) {
  EditProperties(parentWindow, this);
  return 1;
}

int32_t CPDFDriver::ReservedA() { return 1; }

int32_t CPDFDriver::SetDevMode(void* globalHandle) {
  const DriverDevMode* record = LockMatchingRecord(globalHandle, devMode_);
  if (record == nullptr) return 0;
  std::memcpy(&devMode_, record, sizeof devMode_);
  GlobalUnlock(globalHandle);
  return 1;
}

int32_t CPDFDriver::GetDevMode(void* globalHandle) {
  if (globalHandle == nullptr) return 1;
  DriverDevMode* record = LockMatchingRecord(globalHandle, devMode_);
  if (record == nullptr) return 0;
  std::memcpy(record, &devMode_, sizeof devMode_);
  GlobalUnlock(globalHandle);
  return 1;
}

int32_t CPDFDriver::ReservedB() { return 1; }

int32_t CPDFDriver::ReservedC() { return 1; }

void* CPDFDriver::GetDefaultDevMode() {
  if (defaultDevModeHandle_ != nullptr) return defaultDevModeHandle_;
  void* handle = GlobalAlloc(kMovableZeroed, sizeof(DriverDevMode));
  if (handle == nullptr) return nullptr;
  const DriverDevMode defaults = DefaultDevMode();
  if (void* block = GlobalLock(handle)) {
    std::memcpy(block, &defaults, sizeof defaults);
    GlobalUnlock(handle);
  }
  defaultDevModeHandle_ = handle;
  return handle;
}

int32_t CPDFDriver::ReservedD() { return 0; }

int32_t CPDFDriver::SetOption(uint32_t id, int64_t value) {
  const int32_t flag = value != 0 ? 1 : 0;
  if (id == kOptionLayers) devMode_.layersEnabled = flag;
  if (id == kOptionOpenAfterPlot) devMode_.openAfterPlot = flag;
  return 1;
}

void CPDFDriver::ReservedE() {}

uint32_t CPDFDriver::GetBackgroundColor() {
  const DriverDevMode* record = GetDevModePointer();  // through the slot
  return record == nullptr ? kWhite : BackgroundOf(*record);
}

const char16_t* CPDFDriver::GetPaperFile() { return paperFile_.c_str(); }

DriverDevMode* CPDFDriver::GetDevModePointer() { return &devMode_; }

HT_Driver* CPDFDriver::Destroy(uint32_t flags) {
  this->CPDFDriver::~CPDFDriver();
  if ((flags & kFreeObject) != 0) ::operator delete(this);
  return this;
}

}  // namespace hdi
