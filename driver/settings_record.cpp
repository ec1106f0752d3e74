#include "driver/settings_record.h"

#include <algorithm>
#include <string_view>

namespace hdi {
namespace {

constexpr std::u16string_view kDeviceName = u"PDF";
constexpr int16_t kPaperA4 = 9;

}  // namespace

DriverDevMode DefaultDevMode() {
  DriverDevMode record{};
  std::ranges::copy(kDeviceName, record.dm.dmDeviceName);
  record.dm.dmSpecVersion = 1;
  record.dm.dmDriverVersion = 1;
  record.dm.dmSize = sizeof(DEVMODEW);
  record.dm.dmDriverExtra = sizeof(DriverDevMode) - sizeof(DEVMODEW);
  record.dm.dmFields = 0x123;
  record.dm.dmOrientation = kOrientationPortrait;
  record.dm.dmPaperSize = kPaperA4;
  record.dm.dmPaperLength = 2970;
  record.dm.dmPaperWidth = 2100;
  record.dm.dmScale = 100;
  record.dm.dmPrintQuality = 600;
  record.dm.dmColor = 2;
  record.dm.dmDuplex = 1;
  record.dm.dmYResolution = 600;
  record.dm.dmTTOption = 1;

  std::ranges::copy(kDeviceName, record.profileName);
  record.privateTag = 256;
  record.paperId = kPaperA4;
  record.paperWidth = 2100;
  record.paperHeight = 2970;
  record.marginLeft = 50;
  record.marginTop = 170;
  record.marginRight = 50;
  record.marginBottom = 170;
  record.backgroundColor = kNoBackground;
  record.privateCount = 32;
  record.layersEnabled = 1;
  record.linksEnabled = 1;
  record.openAfterPlot = 1;
  return record;
}

}  // namespace hdi
