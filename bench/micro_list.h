// A job that records without host and driver.
#pragma once

#include <cstddef>

#include "bench/scene.h"
#include "recording/path.h"
#include "recording/plot_job.h"

namespace bench {

// Owns the process-wide arenas until destroyed.
class RecordedJob {
 public:
  RecordedJob() {
    hdi::ReleaseChunks(hdi::recordArena);
    hdi::PlotCommand* head = hdi::AllocRecord();
    head->SetOpcode(hdi::OP_LIST_HEAD);
    head->next = nullptr;
    job_.head = job_.tail = head;
    job_.printableHeight = kA4.areaHeight;
  }
  RecordedJob(const RecordedJob&) = delete;
  RecordedJob& operator=(const RecordedJob&) = delete;
  ~RecordedJob() {
    hdi::ReleaseChunks(hdi::recordArena);
    hdi::ReleaseChunks(hdi::sideArena);
  }

  [[nodiscard]] hdi::PlotJob& Job() { return job_; }

  // Records every shape of the scene as a polyline or a curve. `keepFractions` as in the settings record.
  void AddShapes(const Scene& scene, int32_t keepFractions) {
    static_assert(sizeof(Point) == sizeof(hdi::HT_Double_Point));
    hdi::DriverDevMode settings{};
    settings.keepFractions = keepFractions;
    hdi::PathRecorder recorder(job_, &settings);
    for (size_t i = 0; i < scene.ShapeCount(); ++i) {
      const auto* points = reinterpret_cast<const hdi::HT_Double_Point*>(scene.Shape(i).data());
      recorder.AddPolyline(points, static_cast<int32_t>(scene.pointsPerShape));
    }
  }

 private:
  hdi::PlotJob job_;
};

}  // namespace bench
