// The pending path: how points become path records, and how a path ends in a stroke.
//
// Geometry entries only extend the pending path. It is stroked by FlushPath when something arrives that could
// change how it looks, so that any run of polylines in one pen becomes one path.
#pragma once

#include <cstdint>

#include "recording/plot_job.h"

namespace hdi {

// Rounds a coordinate to the nearest whole dot, halves away from zero, as f64 arithmetic on the widened
// value.
[[nodiscard]] float RoundToDot(float value);

// Appends path records to a job. Operations take record coordinates, already flipped and narrowed, but for
// those whose name says that they take the host's.
class PathRecorder {
 public:
  PathRecorder(PlotJob& job, const DriverDevMode* settings)
      : job_(job), keepFractions_(settings != nullptr && settings->keepFractions != 0) {}

  enum class Rounding : uint8_t {
    kToDots,  // unless the device keeps fractions
    kExact,   // never: starts of curves
  };

  // Host coordinates, Y down, to record coordinates, Y up.
  [[nodiscard]] HT_Double_Point MapPoint(const HT_Double_Point& in) const {
    return {in.x, job_.printableHeight - in.y};
  }

  // Begins a subpath, unless the point is the current point: then the path simply goes on. A move before it
  // that stood alone gets its zero-length line, so that it shows as a dot.
  void AddMove(float x, float y, Rounding rounding);
  // Adds a segment, unless it ends at the current point.
  void AddLine(float x, float y);
  // Adds a curve, unless all three points are the current point. Curves are never rounded.
  void AddCurve(const CurveData& curve);

  // The same from host coordinates.
  void AddHostMove(const HT_Double_Point& point, Rounding rounding = Rounding::kToDots);
  void AddHostLine(const HT_Double_Point& point);
  void AddHostCurve(const HT_Double_Point& control1, const HT_Double_Point& control2,
                    const HT_Double_Point& end);

  // A polyline of host points, at least one: from the first, or backwards from the last when that touches the
  // current point.
  void AddPolyline(const HT_Double_Point* points, int32_t count);

 private:
  [[nodiscard]] bool IsCurrentPoint(double x, double y) const;
  [[nodiscard]] bool EndsAtCurrentPoint(const HT_Double_Point& host) const;

  PlotJob& job_;
  const bool keepFractions_;
};

// Forgets the current point without stroking: the records of the path stay open in the list.
inline void ResetPath(PlotJob& job) {
  job.loneMove = 0;
  job.currentX = kNoPoint;
  job.currentY = kNoPoint;
}

// Strokes the pending path, if there is one.
void FlushPath(PlotJob& job);

// The same for the device's job, if it has one.
inline void FlushPath(const HostDevice* device) {
  if (PlotJob* job = JobOf(device)) FlushPath(*job);
}

}  // namespace hdi
