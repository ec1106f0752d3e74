// The default settings.
#include "driver/settings_record.h"

#include <algorithm>
#include <string_view>

namespace hdi {
namespace {

constexpr std::u16string_view kDeviceName = u"PDF";
// A4 portrait with the margins of the host's list, in tenths of a millimetre.
constexpr int16_t kPaperA4 = 9;
constexpr int16_t kWidth = 2100;
constexpr int16_t kHeight = 2970;
constexpr int16_t kSideMargin = 50;
constexpr int16_t kEndMargin = 170;

constexpr int16_t kDotsPerInch = 600;

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
  record.dm.dmPaperLength = kHeight;
  record.dm.dmPaperWidth = kWidth;
  record.dm.dmScale = 100;
  record.dm.dmPrintQuality = kDotsPerInch;
  record.dm.dmColor = 2;
  record.dm.dmDuplex = 1;
  record.dm.dmYResolution = kDotsPerInch;
  record.dm.dmTTOption = 1;

  std::ranges::copy(kDeviceName, record.profileName);
  record.privateTag = 256;
  record.paperId = kPaperA4;
  record.paperWidth = kWidth;
  record.paperHeight = kHeight;
  record.marginLeft = kSideMargin;
  record.marginTop = kEndMargin;
  record.marginRight = kSideMargin;
  record.marginBottom = kEndMargin;
  record.backgroundColor = kNoBackground;
  record.privateCount = 32;
  record.layersEnabled = 1;
  record.linksEnabled = 1;
  record.openAfterPlot = 1;
  return record;
}

}  // namespace hdi
