// The host's support library, HDIDriver: paths, the device list, paper, arcs, text runs and font names, and
// on platforms without them the global memory blocks. On the host's own platform it is a closed library of
// the host; the stand-in in host/library/ keeps the contracts below, so that the driver builds and runs
// without the host.
//
// Wide strings that a function returns belong to the library and stay valid until the next call of the same
// function. Functions that take an output parameter leave it untouched on failure. No function throws, but
// for want of memory.
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
// As <windows.h> declares the same functions, for units that see both.
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

// A paper of the host's list. Lengths in tenths of a millimetre, for the sheet held upright.
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

// One cubic curve: it starts at `start` and ends at `end`.
struct HT_BezierCurve {
  HT_Double_Point start;
  HT_Double_Point control1;
  HT_Double_Point control2;
  HT_Double_Point end;
};
static_assert(sizeof(HT_BezierCurve) == 64);

// An elliptic arc in a plane whose unit is the dot. `radiusX` and `radiusY` lie along the ellipse's own axes,
// which are turned by `rotation`; `startAngle` and `endAngle` are values of the ellipse's parameter, so that
// the point at t is centre + R(rotation) * (radiusX cos t, radiusY sin t). All angles are in radians. The arc
// runs from start to end towards growing angles: an end below the start counts with as many whole turns more
// as lift it above. A span of a whole turn or more is the full ellipse, and equal angles are no arc.
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

// Appends to `curves` the cubic curves that follow `arc` end to start, in the arc's direction. A curve's end
// and the next one's start are the same f64 values; a full ellipse ends exactly where it began. The curves
// stay within 1/20 dot of the arc for radii up to 100,000 dots. Appends nothing for an arc without a span or
// with a value that is not finite.
HDI_HOST_API void HT_ConvertEllipArcToBezierCurves(const HT_EllipArc& arc,
                                                   std::vector<HT_BezierCurve>& curves);

// A stretch of text in one font.
struct HT_TextRun {
  HT_TextRun* next;      // the following run, or the end node
  HT_TextRun* previous;  // the preceding run, or the end node
  LOGFONTW* lf;          // the font chosen for this run
  char16_t* text;        // not terminated
  int32_t count;
  double* advances;         // `count` of them, or null
  std::u16string fontName;  // what GetFontFullName gives for `lf`
};
static_assert(offsetof(HT_TextRun, lf) == 16);
static_assert(offsetof(HT_TextRun, advances) == 40);
static_assert(offsetof(HT_TextRun, fontName) == 48);

// A text split into runs of one font each. A character that the font lacks goes to the next font that has it,
// and neighbours of the same font stay in one run; a character that no font has stays with the font itself.
// The same arguments give the same runs every time. Without advances the text is one of a shape font, which
// has no outlines: its runs are in the system's default interface font, in which it can be searched for.
// Nothing is kept of what the constructor is given. A count below 1 gives no runs.
class HDI_HOST_API HT_Text {
 public:
  HT_Text(const LOGFONTW* font, const char16_t* text, int32_t count, const double* advances);
  HT_Text(const HT_Text& other);
  HT_Text& operator=(const HT_Text&) = delete;
  ~HT_Text();

  HT_TextRun* runs = nullptr;  // the end node of a circular list, whose `next` is the first run
  uint64_t runCount = 0;
};
static_assert(sizeof(HT_Text) == 16);

// The name by which the font that `font` selects is known, the same for every LOGFONTW that selects it. False
// when there is none, and `name` stays as it is.
HDI_HOST_API bool GetFontFullName(const LOGFONTW* font, std::u16string& name);

}  // namespace hdi

extern "C" {

// The application's directory, without a separator at the end: $HDI_APP_DIR, else the directory of the
// running executable.
HDI_HOST_API const char16_t* OrvaneGetAppFullPath();

// The user's data directory, with a separator at the end: $HDI_USER_DIR, else the platform's usual place.
HDI_HOST_API const char16_t* OrvaneGetAppDataPathWithBackslash();

// The device list of `iniFile`: the names of its sections in file order, each zero-terminated, with an empty
// name at the end. The first section holds general settings and is no device. With a null buffer and a
// capacity of 0 the result is the number of 16-bit units needed, 0 when there is no section or no file.
// Otherwise fills at most `capacity` units, ended by two zeros when the capacity is 2 or more, and returns
// the number of units needed.
HDI_HOST_API int32_t HT_ListCloseDriver(char16_t* buffer, int32_t capacity, const char16_t* iniFile);

// Paper queries on the paper file `file`. Capability 19 (the host's own): with a null `output` the number of
// papers; otherwise fills `output` with that many PaperSize records, in the list's order. Capabilities of the
// platform that concern paper: 2 (DC_PAPERS, ids as u16), 3 (DC_PAPERSIZE, pairs of i32 in tenths of a
// millimetre), 16 (DC_PAPERNAMES, 64 units each); a null `output` gives their count. Capability 20 gives 0.
// Anything else gives -1, as DeviceCapabilitiesW does. Without a paper file the built-in list serves; a
// broken paper file gives the built-in list too and, once a file, one message on standard error.
HDI_HOST_API int32_t HT_DefaultDeviceCapabilities(uint16_t capability, char* output, const void* devMode,
                                                  const char16_t* file);

// These change the paper list and save it to `file`. Other lines of the file stay as they are. A broken paper
// file is not written to, so that it can still be mended: the result is 0.
//
// Adds `paper` under a new id (the first free one from 256 on), whatever its `id` says, and saves the file.
// Returns the new id, or 0 when the file could not be written or the paper's size is not above zero.
HDI_HOST_API int32_t HT_DefaultCreatePaper(const void* devMode, const hdi::PaperSize& paper,
                                           const char16_t* file);

// Replaces the paper with the id of `paper` and saves the file. Returns that id, or 0 when there is no such
// paper, its size is not above zero or the file could not be written.
HDI_HOST_API int32_t HT_DefaultModifyPaper(const void* devMode, const hdi::PaperSize& paper,
                                           const char16_t* file);

// Removes the paper `id` and saves the file. Returns 1, or 0 when there is no such paper or the file could
// not be written. `devMode` may be null.
HDI_HOST_API int32_t HT_DefaultDeletePaper(const void* devMode, const int32_t& id, const char16_t* file);

// Whether a and b differ by less than `tolerance`.
HDI_HOST_API bool isEqual(double a, double b, double tolerance);

// Global memory blocks: the platform's own functions on Windows, elsewhere the library's. Flag 0x40 zeroes
// the block, flag 2 makes it movable. A handle is opaque and a block is read and written only between
// GlobalLock and GlobalUnlock, which count. A handle that is null or unknown gives null, 0, or, from
// GlobalFree, the handle itself.
HDI_GLOBAL_MEMORY(void*) GlobalAlloc(uint32_t flags, size_t size);
HDI_GLOBAL_MEMORY(void*) GlobalLock(void* handle);
HDI_GLOBAL_MEMORY(int32_t) GlobalUnlock(void* handle);  // 1 while the block stays locked, else 0
HDI_GLOBAL_MEMORY(size_t) GlobalSize(void* handle);
HDI_GLOBAL_MEMORY(void*) GlobalFree(void* handle);  // null when the block has been freed

}  // extern "C"
