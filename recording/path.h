// The pending path: how points become path records, and how a path is stroked.
//
// Geometry entries only extend the pending path. FlushPath strokes it when something arrives that could
// change its look, so a run of polylines in one pen becomes one path.
#pragma once

#include <cstdint>

#include "recording/plot_job.h"

namespace hdi {

// Records hold coordinates as f32.
[[nodiscard]] inline float Narrow(double value) { return static_cast<float>(value); }

// Rounds a coordinate to whole dots, halves away from zero, as f64 arithmetic would.
[[nodiscard]] float RoundToDot(float value);

// Appends path records to a job. Takes record coordinates, already flipped and narrowed; functions with Host
// in their names take host coordinates.
class PathRecorder {
 public:
  PathRecorder(PlotJob& job, const DriverDevMode* settings)
      : job_(job), keepFractions_(settings != nullptr && settings->keepFractions != 0) {}

  enum class Rounding : uint8_t {
    kToDots,  // unless the device keeps fractions
    kExact,   // never: start points of curves
  };

  // Converts host coordinates, Y down, to record coordinates, Y up.
  [[nodiscard]] HT_Double_Point MapPoint(const HT_Double_Point& in) const {
    return {in.x, job_.printableHeight - in.y};
  }

  // Starts a subpath, unless the point is the current point: then the path continues. A preceding move
  // without a segment first gets a zero-length line, so that it shows as a dot.
  void AddMove(float x, float y, Rounding rounding);
  // Adds a segment, unless it ends at the current point.
  void AddLine(float x, float y);
  // Adds a curve, unless all three points are the current point. Curves are never rounded.
  void AddCurve(const CurveData& curve);

  // The same in host coordinates.
  void AddHostMove(const HT_Double_Point& point, Rounding rounding = Rounding::kToDots);
  void AddHostLine(const HT_Double_Point& point);
  void AddHostCurve(const HT_Double_Point& control1, const HT_Double_Point& control2,
                    const HT_Double_Point& end);

  // Adds a polyline of at least one host point: from the first, or backwards from the last if that is at the
  // current point.
  void AddPolyline(const HT_Double_Point* points, int32_t count);

 private:
  [[nodiscard]] bool IsCurrentPoint(double x, double y) const;
  [[nodiscard]] bool EndsAtCurrentPoint(const HT_Double_Point& host) const;

  PlotJob& job_;
  const bool keepFractions_;
};

// Drops the current point without stroking; the path's records stay in the list as an open path.
inline void ResetPath(PlotJob& job) {
  job.loneMove = 0;
  job.currentX = kNoPoint;
  job.currentY = kNoPoint;
}

// Strokes the pending path, if there is one.
void FlushPath(PlotJob& job);

// The same for the device's job, if any.
inline void FlushPath(const HostDevice* device) {
  if (PlotJob* job = JobOf(device)) FlushPath(*job);
}

}  // namespace hdi
