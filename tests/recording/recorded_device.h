// A device with an open job whose command list a test can read: entries record into the real arenas, and the
// page writer is one that only remembers what recording tells it.
#pragma once

#include <string>
#include <vector>

#include "driver/pdf_driver.h"
#include "recording/path.h"
#include "recording/plot_entries.h"
#include "recording/plot_job.h"

namespace hdi {

class RememberingWriter final : public RecordedWriter {
 public:
  void SetLineWidth(float width) override { lineWidth = width; }
  void SetLineScale(double scale) override { lineScale = scale; }

  float lineWidth = 0;
  double lineScale = 0;
};

class RecordedDevice {
 public:
  RecordedDevice() {
    device.driver = &driver;
    driver.OpenDevice(&device);
    Job().pageWriter = &writer;
  }
  RecordedDevice(const RecordedDevice&) = delete;
  RecordedDevice& operator=(const RecordedDevice&) = delete;
  ~RecordedDevice() { driver.CloseDevice(&device); }

  [[nodiscard]] PlotJob& Job() { return *device.job; }
  [[nodiscard]] DriverDevMode& Settings() { return *driver.GetDevModePointer(); }

  // The records behind the list's head as text, such as "M 1,2" or "STROKE"; then forgets them.
  [[nodiscard]] std::vector<std::string> TakeRecords();

  int32_t Polyline(const std::vector<HT_Double_Point>& points) {
    return DevPolyline(&device, points.data(), static_cast<int32_t>(points.size()));
  }

  CPDFDriver driver{u"test"};
  HostDevice device{};
  RememberingWriter writer;

 private:
  PlotCommand* taken_ = nullptr;  // the last record that a test has seen
};

}  // namespace hdi
