// A device with an open job whose command list can be read. Entries record into the real arenas.
#pragma once

#include <string>
#include <vector>

#include "driver/pdf_driver.h"
#include "recording/path.h"
#include "recording/plot_entries.h"
#include "recording/plot_job.h"

namespace hdi {

class RecordedDevice {
 public:
  RecordedDevice() {
    device.driver = &driver;
    driver.OpenDevice(&device);
    Job().pageWriter = &writer_;
  }
  RecordedDevice(const RecordedDevice&) = delete;
  RecordedDevice& operator=(const RecordedDevice&) = delete;
  ~RecordedDevice() { driver.CloseDevice(&device); }

  [[nodiscard]] PlotJob& Job() { return *device.job; }
  [[nodiscard]] DriverDevMode& Settings() { return *driver.GetDevModePointer(); }

  // Returns the records since the last call as text, such as "M 1 2, L 3 4, STROKE".
  [[nodiscard]] std::string TakeRecords();

  int32_t Polyline(const std::vector<HT_Double_Point>& points) {
    return DevPolyline(&device, points.data(), static_cast<int32_t>(points.size()));
  }

  CPDFDriver driver{u"test"};
  HostDevice device{};

 private:
  struct SilentWriter final : RecordedWriter {
    void SetLineWidth(float /*width*/) override {}
    void SetLineScale(double /*scale*/) override {}
  };

  SilentWriter writer_;
  PlotCommand* taken_ = nullptr;  // the last record returned
};

}  // namespace hdi
