// Entries that set pen, brush, opacity, raster operation, fill mode, line scale and owner window.
#include <array>
#include <cstring>
#include <memory>
#include <new>
#include <span>

#include "recording/path.h"
#include "recording/plot_entries.h"
#include "recording/plot_job.h"

namespace hdi {
namespace {

// Line cap and join codes of the operators J and j (ISO 32000-1:2008, 8.4.3.3 and 8.4.3.4).
enum LineCap : uint32_t { kCapButt = 0, kCapRound = 1, kCapSquare = 2 };
enum LineJoin : uint32_t { kJoinMiter = 0, kJoinRound = 1, kJoinBevel = 2 };

constexpr std::array kDashEntries = {15.0F, 10.0F};                // points
constexpr std::array kDotEntries = {0.5F, 9.5F};                   // points
constexpr std::array kDashDotEntries = {13.0F, 6.0F, 0.5F, 5.5F};  // points

float WidthOf(const EXTLOGPEN32& pen) {
  return (pen.elpPenStyle & kPenTypeMask) == kPenGeometric ? static_cast<float>(pen.elpWidth) : 1.0F;
}

LineCap CapOf(uint32_t style) {
  switch (style & kPenCapMask) {
    case kPenCapRound:
      return kCapRound;
    case kPenCapSquare:
      return kCapSquare;
    default:
      return kCapButt;
  }
}

LineJoin JoinOf(uint32_t style) {
  switch (style & kPenJoinMask) {
    case kPenJoinRound:
      return kJoinRound;
    case kPenJoinBevel:
      return kJoinBevel;
    default:
      return kJoinMiter;
  }
}

// The host's dash entries in points; null if out of memory.
std::unique_ptr<float[]> UserDashes(const EXTLOGPEN32& pen, uint32_t count, int32_t dotsPerInch) {
  std::unique_ptr<float[]> dashes(new (std::nothrow) float[count]);
  if (dashes == nullptr) return nullptr;
  for (uint32_t i = 0; i < count; ++i) {
    uint32_t dots = 0;  // the entries extend beyond the record's declared end
    std::memcpy(
        &dots,
        reinterpret_cast<const uint8_t*>(&pen) + offsetof(EXTLOGPEN32, elpStyleEntry) + sizeof dots * i,
        sizeof dots);
    dashes[i] =
        static_cast<float>(static_cast<double>(dots) * kPointsPerInch / static_cast<double>(dotsPerInch));
  }
  return dashes;
}

void RecordPen(PlotJob& job, const EXTLOGPEN32& pen, float width, std::span<const float> dashes) {
  PlotCommand* record = AllocRecord();
  record->SetOpcode(OP_SET_PEN);
  record->data = AllocSide(static_cast<uint32_t>(sizeof(PenData) + dashes.size_bytes()));
  const PenData data{
      .width = width,
      .cap = CapOf(pen.elpPenStyle),
      .join = JoinOf(pen.elpPenStyle),
      .color = pen.elpColor,
      .merge = job.mergeFlag,
      .dashCount = static_cast<uint32_t>(dashes.size()),
  };
  std::memcpy(record->data, &data, sizeof data);
  if (!dashes.empty()) std::memcpy(record->data + sizeof data, dashes.data(), dashes.size_bytes());
  AppendRecord(job, record);
}

}  // namespace

int32_t DevSetPen(HostDevice* device, const EXTLOGPEN32* pen) {
  FlushPath(device);
  PlotJob* job = JobWithWriter(device);
  if (job == nullptr) return 0;
  const float width = WidthOf(*pen);
  // Also set the width at once: what the replay draws before its first pen gets the width of the job's last
  // one.
  job->pageWriter->SetLineWidth(width);

  // Styles without a dash array plot as solid lines, including the invisible pen.
  switch (pen->elpPenStyle & kPenStyleMask) {
    case kPenDash:
      RecordPen(*job, *pen, width, kDashEntries);
      break;
    case kPenDot:
      RecordPen(*job, *pen, width, kDotEntries);
      break;
    case kPenDashDot:
      RecordPen(*job, *pen, width, kDashDotEntries);
      break;
    case kPenUserStyle: {
      const uint32_t count = pen->elpNumEntries > 0 ? static_cast<uint32_t>(pen->elpNumEntries) : 0;
      const DriverDevMode* settings = SettingsOf(device);
      const int32_t dotsPerInch = settings == nullptr ? kDefaultDotsPerInch : DotsPerInch(*settings);
      const auto dashes = UserDashes(*pen, count, dotsPerInch);
      if (dashes == nullptr) return 1;  // the previous pen stays in force
      RecordPen(*job, *pen, width, {dashes.get(), count});
      break;
    }
    default:
      RecordPen(*job, *pen, width, {});
  }
  return 1;
}

int32_t DevSetBrush(HostDevice* device, const LOGBRUSH* brush) {
  FlushPath(device);
  PlotJob* job = JobWithWriter(device);
  if (job == nullptr) return 0;
  Record(*job, OP_SET_BRUSH,
         BrushData{.style = brush->lbStyle,
                   .color = brush->lbColor,
                   .hatch = brush->lbHatch,
                   .merge = job->mergeFlag});
  return 1;
}

int32_t DevSetAlpha(HostDevice* device, uint32_t opacity) {
  PlotJob* job = JobOf(device);
  if (job == nullptr) return 0;
  FlushPath(*job);
  Record(*job, OP_SET_ALPHA, AlphaData{opacity});
  return 1;
}

int32_t DevSetRasterOp(HostDevice* device, uint32_t code) {
  PlotJob* job = JobOf(device);
  if (job == nullptr) return 0;
  FlushPath(*job);
  job->mergeFlag = code == kRasterOpMaskPen ? 1 : 0;
  return 1;
}

int32_t DevSetFillMode(HostDevice* device, uint32_t mode) {
  PlotJob* job = JobOf(device);
  if (job == nullptr) return 0;
  job->fillMode = mode;
  return 1;
}

int32_t DevSetLineScale(HostDevice* device, double scale) {
  PlotJob* job = JobOf(device);
  if (job == nullptr) return 0;
  if (job->pageWriter != nullptr) job->pageWriter->SetLineScale(scale);
  return 1;
}

int32_t DevSetOwnerWindow(HostDevice* device, void* window) {
  if (PlotJob* job = JobOf(device)) job->ownerWindow = window;
  return 1;
}

}  // namespace hdi
