// The binary interface between the host and the driver. The host addresses virtual operations by slot, entry
// points by position and settings by byte offset, so nothing in this header may be reordered.
//
// Wide strings are passed as pointers to zero-terminated 16-bit units. What an operation returns belongs to
// its object and stays valid until that is changed or destroyed. Records and points are passed by address,
// f64 and integers by value. Results are 32-bit integers, 1 for success and 0 for failure, unless stated
// otherwise.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/host_library.h"
#include "platform/records.h"

namespace hdi {

class HT_Driver;
struct PlotJob;  // recording/plot_job.h; opaque to the host

// The settings record: a DEVMODEW and 1024 bytes of driver data. Paper values are in tenths of a millimetre.
// The reserved bytes are copied with the record and not used.
struct DriverDevMode {
  DEVMODEW dm;
  uint8_t snapshot[220];     // the public part as last resolved by NormalizeDevMode
  char16_t profileName[32];  // read only by the companion module
  uint32_t privateTag;
  int32_t paperId;  // 0 for the custom paper
  int32_t paperWidth;
  int32_t paperHeight;
  int32_t marginLeft;
  int32_t marginTop;
  int32_t marginRight;
  int32_t marginBottom;
  uint8_t reserved536[12];
  uint32_t backgroundColor;  // 0x00BBGGRR; all ones: none; 0 counts as white
  uint8_t reserved552[8];
  uint32_t privateCount;
  uint8_t reserved564[36];
  int32_t layersEnabled;
  int32_t linksEnabled;
  int32_t textAsGeometry;
  int32_t openAfterPlot;
  int32_t keepFractions;
  uint8_t reserved620[624];
};
static_assert(sizeof(DriverDevMode) == 1244);
static_assert(offsetof(DriverDevMode, snapshot) == 220);
static_assert(offsetof(DriverDevMode, profileName) == 440);
static_assert(offsetof(DriverDevMode, privateTag) == 504);
static_assert(offsetof(DriverDevMode, paperId) == 508);
static_assert(offsetof(DriverDevMode, paperWidth) == 512);
static_assert(offsetof(DriverDevMode, paperHeight) == 516);
static_assert(offsetof(DriverDevMode, marginLeft) == 520);
static_assert(offsetof(DriverDevMode, marginTop) == 524);
static_assert(offsetof(DriverDevMode, marginRight) == 528);
static_assert(offsetof(DriverDevMode, marginBottom) == 532);
static_assert(offsetof(DriverDevMode, backgroundColor) == 548);
static_assert(offsetof(DriverDevMode, privateCount) == 560);
static_assert(offsetof(DriverDevMode, layersEnabled) == 600);
static_assert(offsetof(DriverDevMode, linksEnabled) == 604);
static_assert(offsetof(DriverDevMode, textAsGeometry) == 608);
static_assert(offsetof(DriverDevMode, openAfterPlot) == 612);
static_assert(offsetof(DriverDevMode, keepFractions) == 616);

inline constexpr uint32_t kNoBackground = 0xFFFFFFFF;

// Tenths of a millimetre an inch, and points an inch.
inline constexpr int32_t kTenthsPerInch = 254;
inline constexpr double kPointsPerInch = 72.0;

inline constexpr int32_t kDefaultDotsPerInch = 300;

// The device's resolution: the record's print quality, or the default if that is 0 or one of the negative
// codes.
[[nodiscard]] inline int32_t DotsPerInch(const DriverDevMode& devMode) {
  return devMode.dm.dmPrintQuality < 1 ? kDefaultDotsPerInch : devMode.dm.dmPrintQuality;
}

inline constexpr uint32_t kWhite = 0xFFFFFF;

// The page background. 0 counts as white, so true black is not available.
[[nodiscard]] inline uint32_t BackgroundOf(const DriverDevMode& devMode) {
  return devMode.backgroundColor == 0 ? kWhite : devMode.backgroundColor;
}

// Positions in the DeviceTable. Positions without a name stay null.
enum class Position : uint8_t {
  kOpen = 0,
  kClose = 1,
  kPrepare = 2,
  kCreateDocument = 5,
  kFinish = 6,
  kOpenOutput = 7,
  kGetCaps = 18,
  kStartDoc = 19,
  kEndDoc = 20,
  kStartPage = 21,
  kEndPage = 22,
  kArc = 25,
  kPolyline = 26,
  kPolygon = 27,
  kPolyPolygon = 28,
  kPolyBezier = 29,
  kBeginPath = 30,
  kEndPath = 31,
  kFillPath = 32,
  kStrokeFillPath = 33,
  kSetFillMode = 34,
  kBeginLink = 35,
  kEndLink = 36,
  kSetAlpha = 37,
  kSetPen = 38,
  kSetBrush = 39,
  kSetRasterOp = 42,
  kSetClip = 43,
  kText = 48,
  kSetOwnerWindow = 49,
  kSetLayer = 50,
  kBitmap = 51,
  kSetLineScale = 52,
  kShxComment = 58,
};

inline constexpr size_t kPositionCount = 59;

struct DeviceTable {
  using Entry = void (*)();
  Entry positions[kPositionCount];

  // The entry at `position`. Function must be its actual type.
  template <typename Function>
  [[nodiscard]] Function* At(Position position) const {
    return reinterpret_cast<Function*>(positions[static_cast<size_t>(position)]);
  }
};
static_assert(sizeof(DeviceTable) == kPositionCount * sizeof(void*));

// The host's device. The driver uses only these fields; others of the host may follow.
struct HostDevice {
  HT_Driver* driver;              // written by the host
  const char16_t* defaultOutput;  // written by the host: the output if the document names none
  PlotJob* job;                   // null when closed
  DeviceTable* table;             // written by OpenDevice
  int32_t started;                // set by DevStartDoc, cleared only by the host
};
static_assert(offsetof(HostDevice, started) == 32);

// A node of the host's clip list.
struct ClipPolygon {
  uint32_t apply;  // read from the last node only: non-zero sets the clip path
  const ClipPolygon* next;
  int32_t count;
  const HT_Double_Point* points;  // host coordinates
};
static_assert(sizeof(ClipPolygon) == 32);
static_assert(offsetof(ClipPolygon, points) == 24);

// The host's raster object, with the operations in this order from slot 0. The raster owns the memory that
// they return.
class RasterImage {
 public:
  virtual const BITMAPINFOHEADER* GetImageHeader() = 0;
  virtual int32_t GetPixelWidth() = 0;
  virtual int32_t GetPixelHeight() = 0;
  virtual int32_t HasAlphaChannel() = 0;
  virtual uint8_t* GetPixelBits() = 0;
  virtual uint8_t* EncodeToMemory(const char* format, int32_t quality, uint64_t* size) = 0;
  virtual void FreeEncoded(uint8_t* data) = 0;

 protected:
  ~RasterImage() = default;
};

// The raster that DevBitmap takes. The host keeps it and the raster alive until DevEndDoc has returned.
struct HostImageRecord {
  RasterImage* image;
  double originX;
  double originY;
  double scaleX;  // dots a pixel
  double unread[2];
  double scaleY;
};
static_assert(sizeof(HostImageRecord) == 56);

class HT_IF {
 public:
  virtual int32_t QueryInterface(const GUID& iid, HT_Driver** out) = 0;

 protected:
  ~HT_IF() = default;
};

// A driver object as the host sees it. The slots follow QueryInterface in this order; there is no virtual
// destructor, and Destroy is an ordinary last slot.
class HT_Driver : public HT_IF {
 public:
  virtual const char16_t* GetName() = 0;
  virtual const char16_t* GetModuleName() = 0;
  virtual const char16_t* GetVersion() = 0;
  virtual int32_t ShowProperties(void* parentWindow) = 0;
  virtual int32_t ReservedA() = 0;
  virtual int32_t SetDevMode(void* globalHandle) = 0;
  virtual int32_t GetDevMode(void* globalHandle) = 0;
  virtual int32_t ReservedB() = 0;
  virtual int32_t ReservedC() = 0;
  virtual int32_t OpenDevice(HostDevice* device) = 0;
  virtual int32_t CloseDevice(HostDevice* device) = 0;
  virtual void* GetDefaultDevMode() = 0;
  virtual int32_t DeviceCapabilities(uint16_t capability, uint8_t* output, DriverDevMode* devMode) = 0;
  virtual int32_t CreatePaper(const PaperSize& paper, int32_t* id, DriverDevMode* devMode) = 0;
  virtual int32_t SetCustomPaper(const char16_t* name, double width, double height, double left, double right,
                                 double top, double bottom) = 0;
  virtual int32_t ModifyPaper(const PaperSize& paper, int32_t* id, DriverDevMode* devMode) = 0;
  virtual int32_t DeletePaper(int32_t id) = 0;
  virtual int32_t ReservedD() = 0;
  virtual int32_t SetOption(uint32_t id, int64_t value) = 0;
  virtual void ReservedE() = 0;
  virtual uint32_t GetBackgroundColor() = 0;
  virtual void NormalizeDevMode(DriverDevMode* record) = 0;
  virtual const char16_t* GetPaperFile() = 0;
  virtual DriverDevMode* GetDevModePointer() = 0;
  virtual HT_Driver* Destroy(uint32_t flags) = 0;

 protected:
  ~HT_Driver() = default;
};

// {5B3A4DFA-540C-4EC3-A404-5C51AD31789A}
inline constexpr GUID kDriverInterfaceId = {
    0x5B3A4DFA, 0x540C, 0x4EC3, {0xA4, 0x04, 0x5C, 0x51, 0xAD, 0x31, 0x78, 0x9A}};

// The host's object that receives the drivers. The module calls its second and third virtual operation.
class HostDriverList {
 public:
  virtual void HostOwn() = 0;
  virtual void AddDriver(HT_Driver* driver) = 0;
  virtual void RemoveDriver(HT_Driver* driver) = 0;

 protected:
  ~HostDriverList() = default;
};

// The context of IT_Driver with kReleaseDriver.
struct DriverRelease {
  HostDriverList* list;
  HT_Driver* driver;
};

inline constexpr uint64_t kCreateDrivers = 2;
inline constexpr uint64_t kReleaseDriver = 3;

using ItDriverFunction = int64_t(uint64_t code, void* context);

// Types of the DeviceTable's entry points, named by position.
namespace entry {
using Open = int32_t(HostDevice*);
using Close = int32_t(HostDevice*);
using Prepare = void(HostDevice*);
using CreateDocument = int32_t(HostDevice**);
using Finish = int32_t(HostDevice**);
using OpenOutput = void*(HostDevice*);
using GetCaps = uint32_t(HostDevice*, int32_t index);
using StartDoc = int32_t(HostDevice*, const DOCINFOW*);
using EndDoc = int32_t(HostDevice*);
using StartPage = int32_t(HostDevice*, const DriverDevMode*);
using EndPage = int32_t(HostDevice*);
using Arc = int32_t(HostDevice*, const HT_Double_Point* center, double a, double b, double c, double d,
                    double e);
using Polyline = int32_t(HostDevice*, const HT_Double_Point*, int32_t count);
using Polygon = Polyline;
using PolyPolygon = int32_t(HostDevice*, const HT_Double_Point*, const uint32_t* counts,
                            int32_t polygonCount);
using PolyBezier = Polyline;
using BeginPath = int32_t(HostDevice*);
using EndPath = int32_t(HostDevice*);
using FillPath = int32_t(HostDevice*);
using StrokeFillPath = int32_t(HostDevice*);
using SetFillMode = int32_t(HostDevice*, uint32_t mode);
using BeginLink = int32_t(HostDevice*, const char16_t* target);
using EndLink = int32_t(HostDevice*);
using SetAlpha = int32_t(HostDevice*, uint32_t opacity);
using SetPen = int32_t(HostDevice*, const EXTLOGPEN32*);
using SetBrush = int32_t(HostDevice*, const LOGBRUSH*);
using SetRasterOp = int32_t(HostDevice*, uint32_t code);
using SetClip = int32_t(HostDevice*, const ClipPolygon*);
using Text = int32_t(HostDevice*, const LOGFONTW*, const HT_Double_Point* position, const char16_t* text,
                     int32_t count, const double* advances, double textHeight, double obliqueAngle,
                     double trackingFactor, double widthFactor);
using SetOwnerWindow = int32_t(HostDevice*, void* window);
using SetLayer = int32_t(HostDevice*, int64_t reserved, const char16_t* name);
using Bitmap = int32_t(HostDevice*, const HostImageRecord*);
using SetLineScale = int32_t(HostDevice*, double scale);
using ShxComment = int32_t(HostDevice*, const char16_t* text, const int32_t* rect, uint32_t flags);
}  // namespace entry

}  // namespace hdi
