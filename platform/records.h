// Records of the platform's published headers with the same byte layout on every platform. Wide characters
// are 16-bit units; numbers are little-endian.
//
// Record and member names are the platform's own. On Windows, static assertions in platform/windows check
// them against <windows.h>.
#pragma once

#include <cstddef>
#include <cstdint>

namespace hdi {

struct GUID {
  uint32_t Data1;
  uint16_t Data2;
  uint16_t Data3;
  uint8_t Data4[8];
};
static_assert(sizeof(GUID) == 16);

// The public part of a device's settings.
struct DEVMODEW {
  char16_t dmDeviceName[32];
  uint16_t dmSpecVersion;
  uint16_t dmDriverVersion;
  uint16_t dmSize;
  uint16_t dmDriverExtra;
  uint32_t dmFields;
  int16_t dmOrientation;
  int16_t dmPaperSize;
  int16_t dmPaperLength;
  int16_t dmPaperWidth;
  int16_t dmScale;
  int16_t dmCopies;
  int16_t dmDefaultSource;
  int16_t dmPrintQuality;
  int16_t dmColor;
  int16_t dmDuplex;
  int16_t dmYResolution;
  int16_t dmTTOption;
  int16_t dmCollate;
  char16_t dmFormName[32];
  uint16_t dmLogPixels;
  uint32_t dmBitsPerPel;
  uint32_t dmPelsWidth;
  uint32_t dmPelsHeight;
  uint32_t dmDisplayFlags;
  uint32_t dmDisplayFrequency;
  uint32_t dmICMMethod;
  uint32_t dmICMIntent;
  uint32_t dmMediaType;
  uint32_t dmDitherType;
  uint32_t dmReserved1;
  uint32_t dmReserved2;
  uint32_t dmPanningWidth;
  uint32_t dmPanningHeight;
};
static_assert(sizeof(DEVMODEW) == 220);
static_assert(offsetof(DEVMODEW, dmSpecVersion) == 64);
static_assert(offsetof(DEVMODEW, dmSize) == 68);
static_assert(offsetof(DEVMODEW, dmDriverExtra) == 70);
static_assert(offsetof(DEVMODEW, dmFields) == 72);
static_assert(offsetof(DEVMODEW, dmOrientation) == 76);
static_assert(offsetof(DEVMODEW, dmPaperSize) == 78);
static_assert(offsetof(DEVMODEW, dmPaperLength) == 80);
static_assert(offsetof(DEVMODEW, dmPaperWidth) == 82);
static_assert(offsetof(DEVMODEW, dmPrintQuality) == 90);
static_assert(offsetof(DEVMODEW, dmYResolution) == 96);
static_assert(offsetof(DEVMODEW, dmFormName) == 102);
static_assert(offsetof(DEVMODEW, dmLogPixels) == 166);
static_assert(offsetof(DEVMODEW, dmBitsPerPel) == 168);

inline constexpr int16_t kOrientationPortrait = 1;
inline constexpr int16_t kOrientationLandscape = 2;

struct LOGFONTW {
  int32_t lfHeight;
  int32_t lfWidth;
  int32_t lfEscapement;
  int32_t lfOrientation;
  int32_t lfWeight;
  uint8_t lfItalic;
  uint8_t lfUnderline;
  uint8_t lfStrikeOut;
  uint8_t lfCharSet;
  uint8_t lfOutPrecision;
  uint8_t lfClipPrecision;
  uint8_t lfQuality;
  uint8_t lfPitchAndFamily;
  char16_t lfFaceName[32];
};
static_assert(sizeof(LOGFONTW) == 92);
static_assert(offsetof(LOGFONTW, lfItalic) == 20);
static_assert(offsetof(LOGFONTW, lfFaceName) == 28);

struct LOGBRUSH {
  uint32_t lbStyle;
  uint32_t lbColor;  // bytes red, green, blue, 0
  uint64_t lbHatch;
};
static_assert(sizeof(LOGBRUSH) == 16);
static_assert(offsetof(LOGBRUSH, lbColor) == 4);

// 32-bit words; `elpNumEntries` entries start at `elpStyleEntry`.
struct EXTLOGPEN32 {
  uint32_t elpPenStyle;
  uint32_t elpWidth;
  uint32_t elpBrushStyle;
  uint32_t elpColor;  // bytes red, green, blue, 0
  uint32_t elpHatch;
  int32_t elpNumEntries;
  uint32_t elpStyleEntry[1];
};
static_assert(sizeof(EXTLOGPEN32) == 28);
static_assert(offsetof(EXTLOGPEN32, elpStyleEntry) == 24);

// Pen styles (the PS_ codes): line style in bits 0-3, cap in bits 8-11, join in bits 12-15, type in bits
// 16-19.
inline constexpr uint32_t kPenStyleMask = 0xF;
inline constexpr uint32_t kPenSolid = 0;
inline constexpr uint32_t kPenDash = 1;
inline constexpr uint32_t kPenDot = 2;
inline constexpr uint32_t kPenDashDot = 3;
inline constexpr uint32_t kPenUserStyle = 7;
inline constexpr uint32_t kPenCapMask = 0xF00;
inline constexpr uint32_t kPenCapRound = 0;
inline constexpr uint32_t kPenCapSquare = 0x100;
inline constexpr uint32_t kPenCapFlat = 0x200;
inline constexpr uint32_t kPenJoinMask = 0xF000;
inline constexpr uint32_t kPenJoinRound = 0;
inline constexpr uint32_t kPenJoinBevel = 0x1000;
inline constexpr uint32_t kPenJoinMiter = 0x2000;
inline constexpr uint32_t kPenTypeMask = 0xF0000;
inline constexpr uint32_t kPenGeometric = 0x10000;

// Polygon fill modes, and the only raster operation (R2_MASKPEN) that the driver distinguishes.
inline constexpr uint32_t kFillNone = 0;
inline constexpr uint32_t kFillAlternate = 1;
inline constexpr uint32_t kFillWinding = 2;
inline constexpr uint32_t kRasterOpMaskPen = 9;

struct BITMAPINFOHEADER {
  uint32_t biSize;
  int32_t biWidth;
  int32_t biHeight;
  uint16_t biPlanes;
  uint16_t biBitCount;
  uint32_t biCompression;
  uint32_t biSizeImage;
  int32_t biXPelsPerMeter;
  int32_t biYPelsPerMeter;
  uint32_t biClrUsed;
  uint32_t biClrImportant;
};
static_assert(sizeof(BITMAPINFOHEADER) == 40);

struct DOCINFOW {
  int32_t cbSize;
  const char16_t* lpszDocName;
  const char16_t* lpszOutput;
  const char16_t* lpszDatatype;
  uint32_t fwType;
};
static_assert(sizeof(DOCINFOW) == 40);
static_assert(offsetof(DOCINFOW, lpszDocName) == 8);
static_assert(offsetof(DOCINFOW, lpszOutput) == 16);

}  // namespace hdi
