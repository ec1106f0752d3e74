// The driver's paper: the host library's operations on the device's paper file, the custom paper, and the
// only place where a paper becomes the sheet's size and margins.
#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <span>

#include "driver/pdf_driver.h"
#include "platform/host_library.h"
#include "platform/truncation.h"

namespace hdi {
namespace {

// The host's own capabilities.
constexpr uint16_t kCapabilityPapers = 19;
constexpr uint16_t kCapabilitySettings = 20;
constexpr uint16_t kCapabilitySupported = 21;

enum class Turn : uint8_t { kNone, kQuarter };

void SetMargins(DriverDevMode& record, const PaperSize& paper, Turn turn) {
  const bool turned = turn == Turn::kQuarter;
  record.marginLeft = turned ? paper.top : paper.left;
  record.marginTop = turned ? paper.right : paper.top;
  record.marginRight = turned ? paper.bottom : paper.right;
  record.marginBottom = turned ? paper.left : paper.bottom;
}

}  // namespace

int32_t CPDFDriver::DeviceCapabilities(uint16_t capability, uint8_t* output, DriverDevMode* devMode) {
  if (capability == kCapabilitySupported) return 1;
  const std::u16string& file = capability == kCapabilitySettings ? settingsFile_ : paperFile_;
  return HT_DefaultDeviceCapabilities(capability, reinterpret_cast<char*>(output), devMode, file.c_str());
}

int32_t CPDFDriver::CreatePaper(const PaperSize& paper, int32_t* id, DriverDevMode* devMode) {
  *id = HT_DefaultCreatePaper(devMode, paper, paperFile_.c_str());
  return 1;
}

int32_t CPDFDriver::ModifyPaper(const PaperSize& paper, int32_t* id, DriverDevMode* devMode) {
  *id = HT_DefaultModifyPaper(devMode, paper, paperFile_.c_str());
  return 1;
}

int32_t CPDFDriver::DeletePaper(int32_t id) { return HT_DefaultDeletePaper(nullptr, id, paperFile_.c_str()); }

int32_t CPDFDriver::SetCustomPaper(const char16_t* name, double width, double height, double left,
                                   double right, double top, double bottom) {
  constexpr size_t kNameUnits = std::size(PaperSize{}.name);
  customPaper_.id = 0;
  std::ranges::fill(customPaper_.name, u'\0');
  for (size_t i = 0; name != nullptr && i + 1 < kNameUnits && name[i] != 0; ++i)
    customPaper_.name[i] = name[i];
  customPaper_.width = Truncate(width);
  customPaper_.height = Truncate(height);
  customPaper_.left = Truncate(left);
  customPaper_.right = Truncate(right);
  customPaper_.top = Truncate(top);
  customPaper_.bottom = Truncate(bottom);
  return 1;
}

void CPDFDriver::NormalizeDevMode(DriverDevMode* record) {
  if (record == nullptr || std::memcmp(&record->dm, record->snapshot, sizeof record->snapshot) == 0) return;

  const int16_t paperId = record->dm.dmPaperSize;
  if (paperId == 0) {
    // Hosts pass the custom paper's margins rotated by a quarter turn, whatever the orientation, but not its
    // width and height. The snapshot is not updated, so this applies every time.
    record->paperWidth = customPaper_.width;
    record->paperHeight = customPaper_.height;
    SetMargins(*record, customPaper_, Turn::kQuarter);
    record->paperId = 0;
    return;
  }

  const int32_t count = DeviceCapabilities(kCapabilityPapers, nullptr, record);
  if (count <= 0) return;
  const std::unique_ptr<PaperSize[]> papers(new (std::nothrow) PaperSize[static_cast<size_t>(count)]());
  if (papers == nullptr) return;
  DeviceCapabilities(kCapabilityPapers, reinterpret_cast<uint8_t*>(papers.get()), record);
  const std::span list(papers.get(), static_cast<size_t>(count));
  const auto paper = std::ranges::find(list, int32_t{paperId}, &PaperSize::id);
  if (paper == list.end()) return;

  const bool landscape = record->dm.dmOrientation == kOrientationLandscape;
  record->paperWidth = landscape ? paper->height : paper->width;
  record->paperHeight = landscape ? paper->width : paper->height;
  SetMargins(*record, *paper, landscape ? Turn::kQuarter : Turn::kNone);
  record->paperId = paper->id;
  std::memcpy(record->snapshot, &record->dm, sizeof record->snapshot);
}

}  // namespace hdi
