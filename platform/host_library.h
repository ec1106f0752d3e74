// The host's support library, HDIDriver: paths, device list, paper, arcs, text runs, font names and, on
// platforms without them, global memory blocks. On the host's own platform it is a closed library; the
// stand-in in host/library/ keeps the contracts below, so that the driver builds and runs without the host.
//
// Wide strings that a function returns belong to the library and stay valid until the next call of the same
// function. On failure, output parameters are left unchanged. Functions throw nothing but std::bad_alloc.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/records.h"

#if defined(_WIN32)
#if defined(HDI_HOST_LIBRARY_BUILD)
#define HDI_HOST_API __declspec(dllexport)
#else
#define HDI_HOST_API __declspec(dllimport)
#endif
// Matches the declarations of <windows.h>, for files that include both.
#define HDI_GLOBAL_MEMORY(result) __declspec(dllimport) result __stdcall
#else
#define HDI_HOST_API __attribute__((visibility("default")))
#define HDI_GLOBAL_MEMORY(result) HDI_HOST_API result
#endif

namespace hdi {

struct HT_Double_Point {
  double x;
  double y;
};
static_assert(sizeof(HT_Double_Point) == 16);

// A paper of the host's list, in portrait. Lengths are in tenths of a millimetre.
struct PaperSize {
  int32_t id;
  char16_t name[64];
  int32_t width;
  int32_t height;
  int32_t top;
  int32_t bottom;
  int32_t left;
  int32_t right;
  uint8_t reserved[4];
};
static_assert(sizeof(PaperSize) == 160);
static_assert(offsetof(PaperSize, name) == 4);
static_assert(offsetof(PaperSize, width) == 132);
static_assert(offsetof(PaperSize, top) == 140);
static_assert(offsetof(PaperSize, left) == 148);

// A cubic curve from `start` to `end`.
struct HT_BezierCurve {
  HT_Double_Point start;
  HT_Double_Point control1;
  HT_Double_Point control2;
  HT_Double_Point end;
};
static_assert(sizeof(HT_BezierCurve) == 64);

// An elliptic arc; lengths are in dots, angles in radians. `radiusX` and `radiusY` are along the ellipse's
// axes, which are rotated by `rotation`; `startAngle` and `endAngle` are values of the ellipse's parameter t,
// with the point at t being centre + R(rotation) * (radiusX cos t, radiusY sin t). The arc runs from start to
// end with increasing t; an end below the start is increased by full turns until it is above. A span of a
// full turn or more is the full ellipse; equal angles make no arc.
class HDI_HOST_API HT_EllipArc {
 public:
  HT_EllipArc(const HT_Double_Point& center, double radiusX, double radiusY, double rotation,
              double startAngle, double endAngle);

  [[nodiscard]] HT_Double_Point PointAt(double angle) const;

  HT_Double_Point center;
  double radiusX;
  double radiusY;
  double rotation;
  double startAngle;
  double endAngle;
};

// Appends cubic curves that approximate `arc`, end to start, in its direction. The end of a curve and the
// start of the next are the same f64 values; a full ellipse ends exactly where it started. The curves stay
// within 1/20 dot of the arc for radii up to 100,000 dots. Appends nothing for an arc without a span or with
// a value that is not finite.
HDI_HOST_API void HT_ConvertEllipArcToBezierCurves(const HT_EllipArc& arc,
                                                   std::vector<HT_BezierCurve>& curves);

// A run of text in one font.
struct HT_TextRun {
  HT_TextRun* next;      // the following run, or the sentinel
  HT_TextRun* previous;  // the preceding run, or the sentinel
  LOGFONTW* lf;          // the font chosen for this run
  char16_t* text;        // not terminated
  int32_t count;
  double* advances;         // `count` values, or null
  std::u16string fontName;  // the name that GetFontFullName returns for `lf`
};
static_assert(offsetof(HT_TextRun, lf) == 16);
static_assert(offsetof(HT_TextRun, advances) == 40);
static_assert(offsetof(HT_TextRun, fontName) == 48);

// Splits a text into runs of one font each. A character that the font lacks is set in the next font that has
// it, or in the font itself if none has; neighbours in the same font share a run. The same arguments always
// give the same runs. Text without advances is in a stroke font, which has no outlines: its runs are in the
// system's default interface font, which makes it searchable. The arguments are copied. A count below 1 gives
// no runs.
class HDI_HOST_API HT_Text {
 public:
  HT_Text(const LOGFONTW* font, const char16_t* text, int32_t count, const double* advances);
  HT_Text(const HT_Text& other);
  HT_Text& operator=(const HT_Text&) = delete;
  ~HT_Text();

  HT_TextRun* runs = nullptr;  // the sentinel of a circular list; `next` is the first run
  uint64_t runCount = 0;
};
static_assert(sizeof(HT_Text) == 16);

// Gets the full name of the font that `font` selects, the same for every LOGFONTW that selects it. Returns
// false, with `name` unchanged, if there is none.
HDI_HOST_API bool GetFontFullName(const LOGFONTW* font, std::u16string& name);

}  // namespace hdi

extern "C" {

// Returns the application's directory without a trailing separator: $HDI_APP_DIR, or else the directory of
// the running executable.
HDI_HOST_API const char16_t* OrvaneGetAppFullPath();

// Returns the user's data directory with a trailing separator: $HDI_USER_DIR, or else the platform's usual
// place.
HDI_HOST_API const char16_t* OrvaneGetAppDataPathWithBackslash();

// Lists the devices in `iniFile`: its section names in file order, each zero-terminated, followed by an empty
// name. The first section holds general settings and is not a device. With a null buffer and a capacity of 0,
// returns the number of 16-bit units needed, or 0 without a section or a file. Otherwise writes at most
// `capacity` units, terminated by two zeros if the capacity is 2 or more, and returns the number of units
// needed.
HDI_HOST_API int32_t HT_ListCloseDriver(char16_t* buffer, int32_t capacity, const char16_t* iniFile);

// Paper queries on the paper file `file`. Capability 19 (the host's own): with a null `output` returns the
// number of papers, otherwise fills `output` with that many PaperSize records in list order. Platform
// capabilities about paper: 2 (DC_PAPERS, ids as u16), 3 (DC_PAPERSIZE, pairs of i32 in tenths of a
// millimetre), 16 (DC_PAPERNAMES, 64 units each); a null `output` returns their count. Capability 20 returns
// 0. All others return -1, like DeviceCapabilitiesW. Without a paper file the built-in list is used; a broken
// one also falls back to it, with one message a file on standard error.
HDI_HOST_API int32_t HT_DefaultDeviceCapabilities(uint16_t capability, char* output, const void* devMode,
                                                  const char16_t* file);

// These change the paper list and save it to `file`. Other lines of the file are kept. A broken paper file is
// not written, so that it can be repaired: the result is 0.
//
// Adds `paper` under a new id, the first free one from 256, ignoring its `id`. Returns the new id, or 0 if
// the file could not be written or the paper's size is not positive.
HDI_HOST_API int32_t HT_DefaultCreatePaper(const void* devMode, const hdi::PaperSize& paper,
                                           const char16_t* file);

// Replaces the paper with the id of `paper`. Returns that id, or 0 if there is no such paper, its size is not
// positive or the file could not be written.
HDI_HOST_API int32_t HT_DefaultModifyPaper(const void* devMode, const hdi::PaperSize& paper,
                                           const char16_t* file);

// Removes the paper `id`. Returns 1, or 0 if there is no such paper or the file could not be written.
// `devMode` may be null.
HDI_HOST_API int32_t HT_DefaultDeletePaper(const void* devMode, const int32_t& id, const char16_t* file);

// Returns whether a and b differ by less than `tolerance`.
HDI_HOST_API bool isEqual(double a, double b, double tolerance);

// Global memory blocks: the platform's own functions on Windows, the library's elsewhere. Flag 0x40 zeroes
// the block, flag 2 makes it movable. Handles are opaque; a block may be accessed only between GlobalLock and
// GlobalUnlock, which count. A null or unknown handle returns null, 0 or, from GlobalFree, the handle itself.
HDI_GLOBAL_MEMORY(void*) GlobalAlloc(uint32_t flags, size_t size);
HDI_GLOBAL_MEMORY(void*) GlobalLock(void* handle);
HDI_GLOBAL_MEMORY(int32_t) GlobalUnlock(void* handle);  // 1 while the block is still locked, else 0
HDI_GLOBAL_MEMORY(size_t) GlobalSize(void* handle);
HDI_GLOBAL_MEMORY(void*) GlobalFree(void* handle);  // null on success

}  // extern "C"
