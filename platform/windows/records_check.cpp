// Checks the records of the border and their constants against the platform's headers.
#include <windows.h>

#include <cstddef>
#include <type_traits>

#include "platform/border.h"

namespace hdi {
namespace {

// Same offset, size and signedness. Character types may differ.
#define HDI_CHECK_MEMBER(record, member)                                 \
  static_assert(offsetof(record, member) == offsetof(::record, member)); \
  static_assert(sizeof(record::member) == sizeof(::record::member));     \
  static_assert(std::is_signed_v<decltype(record::member)> == std::is_signed_v<decltype(::record::member)>)

#define HDI_CHECK_RECORD(record)                     \
  static_assert(sizeof(record) == sizeof(::record)); \
  static_assert(alignof(record) == alignof(::record))

HDI_CHECK_RECORD(GUID);
HDI_CHECK_MEMBER(GUID, Data1);
HDI_CHECK_MEMBER(GUID, Data2);
HDI_CHECK_MEMBER(GUID, Data3);
HDI_CHECK_MEMBER(GUID, Data4);

HDI_CHECK_RECORD(DEVMODEW);
HDI_CHECK_MEMBER(DEVMODEW, dmDeviceName);
HDI_CHECK_MEMBER(DEVMODEW, dmSpecVersion);
HDI_CHECK_MEMBER(DEVMODEW, dmDriverVersion);
HDI_CHECK_MEMBER(DEVMODEW, dmSize);
HDI_CHECK_MEMBER(DEVMODEW, dmDriverExtra);
HDI_CHECK_MEMBER(DEVMODEW, dmFields);
HDI_CHECK_MEMBER(DEVMODEW, dmOrientation);
HDI_CHECK_MEMBER(DEVMODEW, dmPaperSize);
HDI_CHECK_MEMBER(DEVMODEW, dmPaperLength);
HDI_CHECK_MEMBER(DEVMODEW, dmPaperWidth);
HDI_CHECK_MEMBER(DEVMODEW, dmScale);
HDI_CHECK_MEMBER(DEVMODEW, dmCopies);
HDI_CHECK_MEMBER(DEVMODEW, dmDefaultSource);
HDI_CHECK_MEMBER(DEVMODEW, dmPrintQuality);
HDI_CHECK_MEMBER(DEVMODEW, dmColor);
HDI_CHECK_MEMBER(DEVMODEW, dmDuplex);
HDI_CHECK_MEMBER(DEVMODEW, dmYResolution);
HDI_CHECK_MEMBER(DEVMODEW, dmTTOption);
HDI_CHECK_MEMBER(DEVMODEW, dmCollate);
HDI_CHECK_MEMBER(DEVMODEW, dmFormName);
HDI_CHECK_MEMBER(DEVMODEW, dmLogPixels);
HDI_CHECK_MEMBER(DEVMODEW, dmBitsPerPel);
HDI_CHECK_MEMBER(DEVMODEW, dmPelsWidth);
HDI_CHECK_MEMBER(DEVMODEW, dmPelsHeight);
HDI_CHECK_MEMBER(DEVMODEW, dmDisplayFlags);
HDI_CHECK_MEMBER(DEVMODEW, dmDisplayFrequency);
HDI_CHECK_MEMBER(DEVMODEW, dmICMMethod);
HDI_CHECK_MEMBER(DEVMODEW, dmICMIntent);
HDI_CHECK_MEMBER(DEVMODEW, dmMediaType);
HDI_CHECK_MEMBER(DEVMODEW, dmDitherType);
HDI_CHECK_MEMBER(DEVMODEW, dmReserved1);
HDI_CHECK_MEMBER(DEVMODEW, dmReserved2);
HDI_CHECK_MEMBER(DEVMODEW, dmPanningWidth);
HDI_CHECK_MEMBER(DEVMODEW, dmPanningHeight);
static_assert(kOrientationPortrait == DMORIENT_PORTRAIT && kOrientationLandscape == DMORIENT_LANDSCAPE);

// The settings record starts with the platform's record and continues after it.
static_assert(offsetof(DriverDevMode, dm) == 0);
static_assert(offsetof(DriverDevMode, snapshot) == sizeof(::DEVMODEW));
static_assert(sizeof(DriverDevMode::snapshot) == sizeof(::DEVMODEW));
static_assert(sizeof(DriverDevMode) == sizeof(::DEVMODEW) + 1024);

HDI_CHECK_RECORD(LOGFONTW);
HDI_CHECK_MEMBER(LOGFONTW, lfHeight);
HDI_CHECK_MEMBER(LOGFONTW, lfWidth);
HDI_CHECK_MEMBER(LOGFONTW, lfEscapement);
HDI_CHECK_MEMBER(LOGFONTW, lfOrientation);
HDI_CHECK_MEMBER(LOGFONTW, lfWeight);
HDI_CHECK_MEMBER(LOGFONTW, lfItalic);
HDI_CHECK_MEMBER(LOGFONTW, lfUnderline);
HDI_CHECK_MEMBER(LOGFONTW, lfStrikeOut);
HDI_CHECK_MEMBER(LOGFONTW, lfCharSet);
HDI_CHECK_MEMBER(LOGFONTW, lfOutPrecision);
HDI_CHECK_MEMBER(LOGFONTW, lfClipPrecision);
HDI_CHECK_MEMBER(LOGFONTW, lfQuality);
HDI_CHECK_MEMBER(LOGFONTW, lfPitchAndFamily);
HDI_CHECK_MEMBER(LOGFONTW, lfFaceName);

HDI_CHECK_RECORD(LOGBRUSH);
HDI_CHECK_MEMBER(LOGBRUSH, lbStyle);
HDI_CHECK_MEMBER(LOGBRUSH, lbColor);
HDI_CHECK_MEMBER(LOGBRUSH, lbHatch);

HDI_CHECK_RECORD(EXTLOGPEN32);
HDI_CHECK_MEMBER(EXTLOGPEN32, elpPenStyle);
HDI_CHECK_MEMBER(EXTLOGPEN32, elpWidth);
HDI_CHECK_MEMBER(EXTLOGPEN32, elpBrushStyle);
HDI_CHECK_MEMBER(EXTLOGPEN32, elpColor);
HDI_CHECK_MEMBER(EXTLOGPEN32, elpHatch);
static_assert(offsetof(EXTLOGPEN32, elpNumEntries) == offsetof(::EXTLOGPEN32, elpNumEntries));
static_assert(sizeof(EXTLOGPEN32::elpNumEntries) == sizeof(::EXTLOGPEN32::elpNumEntries));
HDI_CHECK_MEMBER(EXTLOGPEN32, elpStyleEntry);
static_assert(kPenStyleMask == PS_STYLE_MASK && kPenCapMask == PS_ENDCAP_MASK);
static_assert(kPenJoinMask == PS_JOIN_MASK && kPenTypeMask == PS_TYPE_MASK && kPenGeometric == PS_GEOMETRIC);
static_assert(kPenSolid == PS_SOLID && kPenDash == PS_DASH && kPenDot == PS_DOT);
static_assert(kPenDashDot == PS_DASHDOT && kPenUserStyle == PS_USERSTYLE);
static_assert(kPenCapRound == PS_ENDCAP_ROUND && kPenCapSquare == PS_ENDCAP_SQUARE);
static_assert(kPenCapFlat == PS_ENDCAP_FLAT && kPenJoinRound == PS_JOIN_ROUND);
static_assert(kPenJoinBevel == PS_JOIN_BEVEL && kPenJoinMiter == PS_JOIN_MITER);
static_assert(kFillAlternate == ALTERNATE && kFillWinding == WINDING && kRasterOpMaskPen == R2_MASKPEN);

HDI_CHECK_RECORD(BITMAPINFOHEADER);
HDI_CHECK_MEMBER(BITMAPINFOHEADER, biSize);
HDI_CHECK_MEMBER(BITMAPINFOHEADER, biWidth);
HDI_CHECK_MEMBER(BITMAPINFOHEADER, biHeight);
HDI_CHECK_MEMBER(BITMAPINFOHEADER, biPlanes);
HDI_CHECK_MEMBER(BITMAPINFOHEADER, biBitCount);
HDI_CHECK_MEMBER(BITMAPINFOHEADER, biCompression);
HDI_CHECK_MEMBER(BITMAPINFOHEADER, biSizeImage);
HDI_CHECK_MEMBER(BITMAPINFOHEADER, biXPelsPerMeter);
HDI_CHECK_MEMBER(BITMAPINFOHEADER, biYPelsPerMeter);
HDI_CHECK_MEMBER(BITMAPINFOHEADER, biClrUsed);
HDI_CHECK_MEMBER(BITMAPINFOHEADER, biClrImportant);

HDI_CHECK_RECORD(DOCINFOW);
HDI_CHECK_MEMBER(DOCINFOW, cbSize);
HDI_CHECK_MEMBER(DOCINFOW, lpszDocName);
HDI_CHECK_MEMBER(DOCINFOW, lpszOutput);
HDI_CHECK_MEMBER(DOCINFOW, lpszDatatype);
HDI_CHECK_MEMBER(DOCINFOW, fwType);

}  // namespace
}  // namespace hdi
