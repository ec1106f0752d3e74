// DevStartPage and DevEndPage.
#include <algorithm>
#include <cstring>

#include "recording/path.h"
#include "recording/plot_entries.h"
#include "recording/plot_job.h"

namespace hdi {
namespace {

double TenthsToPoints(int32_t tenths) {
  return static_cast<double>(tenths) * kPointsPerInch / static_cast<double>(kTenthsPerInch);
}

// Copies the host's settings over the driver's: the public part by the size in the driver's record, and the
// private part if both records give it the same size.
void ReplaceSettings(DriverDevMode& own, const DriverDevMode& given) {
  size_t size = own.dm.dmSize;
  if (given.dm.dmDriverExtra == own.dm.dmDriverExtra) size += own.dm.dmDriverExtra;
  std::memmove(&own, &given, std::min(size, sizeof own));
}

// Height of the printable area in dots. The product is a 32-bit integer and wraps.
double PrintableHeight(const DriverDevMode& settings) {
  const uint32_t tenths = static_cast<uint32_t>(settings.paperHeight) -
                          static_cast<uint32_t>(settings.marginTop) -
                          static_cast<uint32_t>(settings.marginBottom);
  const auto product = static_cast<int32_t>(tenths * static_cast<uint32_t>(DotsPerInch(settings)));
  return static_cast<double>(product) / static_cast<double>(kTenthsPerInch);
}

}  // namespace

int32_t DevStartPage(HostDevice* device, const DriverDevMode* devMode) {
  PlotJob* job = JobOf(device);
  if (job == nullptr || device->driver == nullptr) return 1;
  DriverDevMode* record = device->driver->GetDevModePointer();
  if (record == nullptr) return 1;
  DriverDevMode& settings = *record;
  if (devMode != nullptr) {
    ReplaceSettings(settings, *devMode);
    device->driver->NormalizeDevMode(&settings);
  }
  ++job->pageCounter;
  Record(*job, OP_START_PAGE,
         StartPageData{
             .pageNumber = job->pageCounter,
             .width = TenthsToPoints(settings.paperWidth),
             .height = TenthsToPoints(settings.paperHeight),
             .background = BackgroundOf(settings),
             .marginLeft = TenthsToPoints(settings.marginLeft),
             .marginBottom = TenthsToPoints(settings.marginBottom),
         });
  job->printableHeight = PrintableHeight(settings);
  job->pageClipSeen = 0;
  ResetPath(*job);
  return 1;
}

int32_t DevEndPage(HostDevice* device) {
  PlotJob* job = JobOf(device);
  if (job == nullptr) return 1;
  FlushPath(*job);
  Record(*job, OP_END_PAGE);
  return 1;
}

}  // namespace hdi
