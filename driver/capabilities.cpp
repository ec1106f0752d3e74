// Answers come from the driver's record: there is no device context.
#include "driver/capabilities.h"

#include <cstring>

namespace hdi {
namespace {

constexpr uint32_t kHighestIndex = 191;

// The platform's indexes.
enum CapsIndex : uint32_t {
  kDriverVersion = 0,
  kTechnology = 2,
  kHorzSize = 4,
  kVertSize = 6,
  kHorzRes = 8,
  kVertRes = 10,
  kBitsPixel = 12,
  kPlanes = 14,
  kNumBrushes = 16,
  kNumPens = 18,
  kNumFonts = 22,
  kNumColors = 24,
  kClipCaps = 36,
  kLogPixelsX = 88,
  kLogPixelsY = 90,
  kPhysicalWidth = 110,
  kPhysicalHeight = 111,
  kPhysicalOffsetX = 112,
  kPhysicalOffsetY = 113,
};

// Products are 32-bit integers and wrap.
int32_t ToDots(int32_t tenths, int32_t dotsPerInch) {
  const uint32_t product = static_cast<uint32_t>(tenths) * static_cast<uint32_t>(dotsPerInch);
  return static_cast<int32_t>(product) / kTenthsPerInch;
}

int32_t PrintableLength(int32_t length, int32_t margin1, int32_t margin2) {
  return static_cast<int32_t>(static_cast<uint32_t>(length) - static_cast<uint32_t>(margin1) -
                              static_cast<uint32_t>(margin2));
}

struct SheetSize {
  int32_t width, height;  // tenths of a millimetre
};

SheetSize SheetOf(const DriverDevMode& record) {
  const bool changed = std::memcmp(&record.dm, record.snapshot, sizeof record.snapshot) != 0;
  if (record.dm.dmPaperSize == 0 && !changed) return {record.dm.dmPaperWidth, record.dm.dmPaperLength};
  return {record.paperWidth, record.paperHeight};
}

// The host's own indexes.
int32_t HostCapability(uint32_t index) {
  switch (index) {
    case 175:
    case 180:
    case 182:
    case 183:
    case 184:
    case 185:
    case 187:
    case 191:
      return 1;
    case 178:
      return 2;
    default:
      return 0;
  }
}

int32_t Capability(const DriverDevMode& record, uint32_t index) {
  const int32_t dpi = DotsPerInch(record);
  const SheetSize sheet = SheetOf(record);
  const int32_t printableWidth = PrintableLength(sheet.width, record.marginRight, record.marginLeft);
  const int32_t printableHeight = PrintableLength(sheet.height, record.marginBottom, record.marginTop);
  switch (index) {
    case kDriverVersion:
    case kClipCaps:
      return 1;
    case kTechnology:
      return 511;
    case kHorzSize:
      return printableWidth / 10;
    case kVertSize:
      return printableHeight / 10;
    case kHorzRes:
      return ToDots(printableWidth, dpi);
    case kVertRes:
      return ToDots(printableHeight, dpi);
    case kBitsPixel:
      return 32;
    case kPlanes:
      return 3;
    case kNumBrushes:
    case kNumPens:
    case kNumFonts:
    case kNumColors:
      return 255;
    case kLogPixelsX:
      return dpi;
    case kLogPixelsY:
      return record.dm.dmYResolution > 0 ? record.dm.dmYResolution : dpi;
    case kPhysicalWidth:
      return ToDots(sheet.width, dpi);
    case kPhysicalHeight:
      return ToDots(sheet.height, dpi);
    case kPhysicalOffsetX:
      return ToDots(record.marginLeft, dpi);
    case kPhysicalOffsetY:
      return ToDots(record.marginTop, dpi);
    default:
      return HostCapability(index);
  }
}

}  // namespace

uint32_t DevGetCaps(HostDevice* device, int32_t index) {
  if (device == nullptr || device->driver == nullptr) return 0;
  DriverDevMode* record = device->driver->GetDevModePointer();
  if (record == nullptr) return 0;
  device->driver->NormalizeDevMode(record);
  if (static_cast<uint32_t>(index) > kHighestIndex) return 0;
  return static_cast<uint32_t>(Capability(*record, static_cast<uint32_t>(index)));
}

}  // namespace hdi
