// The raster entry. Records the address of the host's raster; the replay reads its pixels.
#include <cmath>

#include "recording/path.h"
#include "recording/plot_entries.h"
#include "recording/plot_job.h"

namespace hdi {

int32_t DevBitmap(HostDevice* device, const HostImageRecord* image) {
  FlushPath(device);
  PlotJob* job = JobOf(device);
  const DriverDevMode* settings = SettingsOf(device);
  if (image == nullptr || job == nullptr || settings == nullptr) return 0;
  if (image->image == nullptr || image->image->GetImageHeader() == nullptr) return 0;

  const double width = image->image->GetPixelWidth();
  const double height = std::abs(static_cast<double>(image->image->GetPixelHeight()));
  const PathRecorder path(*job, settings);
  const HT_Double_Point upperRight = path.MapPoint({image->originX + width * image->scaleX, image->originY});
  const HT_Double_Point lowerLeft = path.MapPoint({image->originX, image->originY + height * image->scaleY});
  BitmapData data{.image = image,
                  .x = lowerLeft.x,
                  .y = lowerLeft.y,
                  .width = upperRight.x - lowerLeft.x,
                  .height = upperRight.y - lowerLeft.y};
  if (settings->keepFractions == 0) {
    data.x = std::round(data.x);
    data.y = std::round(data.y);
    data.width = std::round(data.width);
    data.height = std::round(data.height);
  }
  Record(*job, OP_BITMAP, data);
  return 1;
}

}  // namespace hdi
