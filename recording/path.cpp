// Converts points to path records.
#include "recording/path.h"

#include <cmath>
#include <limits>

namespace hdi {
namespace {

// Points closer than this on both axes, in dots, are the same.
constexpr double kSamePoint = 1e-5;

bool SameCoordinate(double a, double b) { return std::fabs(a - b) < kSamePoint; }

// kNoPoint narrows to infinity under IEC 60559.
static_assert(std::numeric_limits<float>::is_iec559);
PointData CurrentPoint(const PlotJob& job) {
  return {static_cast<float>(job.currentX), static_cast<float>(job.currentY)};
}

}  // namespace

float RoundToDot(float value) {
  const double wide = value;
  // Rounds by adding one half and truncating, which avoids a call for each coordinate: in f64 a widened f32
  // plus one half never rounds up to the next whole number.
  constexpr double kFitsInt32 = 2147483000.0;
  if (std::fabs(wide) < kFitsInt32)
    return static_cast<float>(static_cast<int32_t>(wide + std::copysign(0.5, wide)));
  return static_cast<float>(std::round(wide));
}

bool PathRecorder::IsCurrentPoint(double x, double y) const {
  return SameCoordinate(x, job_.currentX) && SameCoordinate(y, job_.currentY);
}

bool PathRecorder::EndsAtCurrentPoint(const HT_Double_Point& host) const {
  HT_Double_Point end = MapPoint(host);
  // Rounding moves a coordinate by at most half a dot, and most polylines end further away.
  if (std::fabs(end.x - job_.currentX) >= 1 || std::fabs(end.y - job_.currentY) >= 1) return false;
  if (!keepFractions_) end = {std::round(end.x), std::round(end.y)};
  return IsCurrentPoint(end.x, end.y);  // in f64: only this comparison does not narrow
}

void PathRecorder::AddMove(float x, float y, Rounding rounding) {
  if (rounding == Rounding::kToDots && !keepFractions_) {
    x = RoundToDot(x);
    y = RoundToDot(y);
  }
  if (IsCurrentPoint(x, y)) return;
  // After a flush of a lone move the flag is still set, and this line ends at the sentinel. No path is open
  // then, and the replay drops the line.
  if (job_.loneMove != 0) Record(job_, OP_LINE_TO, CurrentPoint(job_));
  job_.loneMove = 1;
  job_.currentX = x;
  job_.currentY = y;
  Record(job_, OP_MOVE_TO, PointData{x, y});
}

void PathRecorder::AddLine(float x, float y) {
  if (!keepFractions_) {
    x = RoundToDot(x);
    y = RoundToDot(y);
  }
  if (IsCurrentPoint(x, y)) return;
  job_.currentX = x;
  job_.currentY = y;
  job_.loneMove = 0;
  Record(job_, OP_LINE_TO, PointData{x, y});
}

void PathRecorder::AddCurve(const CurveData& curve) {
  if (IsCurrentPoint(curve.x1, curve.y1) && IsCurrentPoint(curve.x2, curve.y2) &&
      IsCurrentPoint(curve.x3, curve.y3)) {
    return;
  }
  job_.loneMove = 0;
  job_.currentX = curve.x3;
  job_.currentY = curve.y3;
  Record(job_, OP_CURVE_TO, curve);
}

void PathRecorder::AddPolyline(const HT_Double_Point* points, int32_t count) {
  // Test the end first: a closed ring that starts and ends at the current point is added backwards.
  if (count >= 2 && EndsAtCurrentPoint(points[count - 1])) {
    for (int32_t i = count - 2; i >= 0; --i) AddHostLine(points[i]);
    return;
  }
  AddHostMove(points[0]);
  for (int32_t i = 1; i < count; ++i) AddHostLine(points[i]);
}

void PathRecorder::AddHostMove(const HT_Double_Point& point, Rounding rounding) {
  const HT_Double_Point p = MapPoint(point);
  AddMove(Narrow(p.x), Narrow(p.y), rounding);
}

void PathRecorder::AddHostLine(const HT_Double_Point& point) {
  const HT_Double_Point p = MapPoint(point);
  AddLine(Narrow(p.x), Narrow(p.y));
}

void PathRecorder::AddHostCurve(const HT_Double_Point& control1, const HT_Double_Point& control2,
                                const HT_Double_Point& end) {
  const HT_Double_Point p1 = MapPoint(control1);
  const HT_Double_Point p2 = MapPoint(control2);
  const HT_Double_Point p3 = MapPoint(end);
  AddCurve({Narrow(p1.x), Narrow(p1.y), Narrow(p2.x), Narrow(p2.y), Narrow(p3.x), Narrow(p3.y)});
}

void FlushPath(PlotJob& job) {
  if (!job.HasPendingPath()) return;
  if (job.loneMove != 0) Record(job, OP_LINE_TO, CurrentPoint(job));
  Record(job, OP_STROKE_PATH);
  // loneMove stays set after the flush; see AddMove.
  job.currentX = kNoPoint;
  job.currentY = kNoPoint;
}

}  // namespace hdi
