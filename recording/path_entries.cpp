// The geometry entries: lines, polygons, curves, arcs, fills and clips.
#include <new>
#include <vector>

#include "recording/path.h"
#include "recording/plot_entries.h"
#include "recording/plot_job.h"

namespace hdi {
namespace {

// Does not flush: the paint record must directly follow the open path.
int32_t PaintPath(HostDevice* device, Opcode opcode) {
  PlotJob* job = JobOf(device);
  if (job != nullptr && job->fillMode != kFillNone) Record(*job, opcode, FillData{job->fillMode});
  return 1;
}

// The page's first clip: the rectangle between opposite corners of the first polygon; the others are ignored.
// Has no effect unless the polygon has four points.
void RecordPageClip(PlotJob& job, const PathRecorder& path, const ClipPolygon& polygon) {
  job.pageClipSeen = 1;
  if (polygon.count != 4) return;
  const HT_Double_Point a = path.MapPoint(polygon.points[0]);
  const HT_Double_Point b = path.MapPoint(polygon.points[2]);
  Record(job, OP_CLIP_RECT,
         ClipRectData{.left = Narrow(a.x < b.x ? a.x : b.x),
                      .bottom = Narrow(a.y < b.y ? a.y : b.y),
                      .right = Narrow(a.x < b.x ? b.x : a.x),
                      .top = Narrow(a.y < b.y ? b.y : a.y)});
}

// Any later clip: all polygons as one path. If `apply` is 0 in the last node, nothing ends that path and it
// becomes part of the next one.
void RecordClipPath(PlotJob& job, PathRecorder& path, const ClipPolygon* list) {
  uint32_t apply = 0;
  for (const ClipPolygon* node = list; node != nullptr; node = node->next) {
    apply = node->apply;
    if (node->count < 2) continue;
    path.AddHostMove(node->points[0]);
    for (int32_t i = 1; i < node->count; ++i) path.AddHostLine(node->points[i]);
  }
  if (apply != 0) Record(job, OP_CLIP_PATH);
}

}  // namespace

int32_t DevPolyline(HostDevice* device, const HT_Double_Point* points, int32_t count) {
  if (count < 1) return 1;
  PlotJob* job = JobWithWriter(device);
  if (job == nullptr || device->driver == nullptr) return 0;
  PathRecorder(*job, SettingsOf(device)).AddPolyline(points, count);
  return 1;
}

int32_t DevPolygon(HostDevice* device, const HT_Double_Point* points, int32_t count) {
  FlushPath(device);
  const int32_t result = DevPolyline(device, points, count);
  DevEndPath(device);
  return result;
}

int32_t DevPolyPolygon(HostDevice* device, const HT_Double_Point* points, const uint32_t* counts,
                       int32_t polygonCount) {
  FlushPath(device);
  uint32_t offset = 0;
  for (int32_t i = 0; i < polygonCount; ++i) {
    DevPolyline(device, points + offset, static_cast<int32_t>(counts[i]));
    offset += counts[i];
  }
  DevEndPath(device);
  DevFillPath(device);
  return 1;
}

int32_t DevPolyBezier(HostDevice* device, const HT_Double_Point* points, int32_t count) {
  PlotJob* job = JobWithWriter(device);
  if (job == nullptr) return 0;
  if (count < 4) return 1;
  PathRecorder path(*job, SettingsOf(device));
  path.AddHostMove(points[0], PathRecorder::Rounding::kExact);
  for (int32_t i = 3; i < count; i += 3) path.AddHostCurve(points[i - 2], points[i - 1], points[i]);
  return 1;
}

int32_t DevArc(HostDevice* device, const HT_Double_Point* center, double a, double b, double c, double d,
               double e) {
  PlotJob* job = JobOf(device);
  if (job == nullptr) return 0;
  // The arc is built in host coordinates, where Y points down and angles run clockwise.
  const HT_EllipArc arc(*center, a, b, -c, -e, -d);
  std::vector<HT_BezierCurve> curves;
  try {
    HT_ConvertEllipArcToBezierCurves(arc, curves);
  } catch (const std::bad_alloc&) {
    return 1;
  }
  PathRecorder path(*job, SettingsOf(device));
  for (const HT_BezierCurve& curve : curves) {
    path.AddHostMove(curve.start, PathRecorder::Rounding::kExact);
    path.AddHostCurve(curve.control1, curve.control2, curve.end);
  }
  return 1;
}

int32_t DevBeginPath(HostDevice* device) {
  FlushPath(device);
  return 1;
}

int32_t DevEndPath(HostDevice* device) {
  if (PlotJob* job = JobOf(device)) ResetPath(*job);
  return 1;
}

int32_t DevFillPath(HostDevice* device) { return PaintPath(device, OP_FILL_PATH); }

int32_t DevStrokeFillPath(HostDevice* device) { return PaintPath(device, OP_FILL_STROKE_PATH); }

int32_t DevSetClip(HostDevice* device, const ClipPolygon* list) {
  FlushPath(device);
  PlotJob* job = JobWithWriter(device);
  if (job == nullptr) return 0;
  if (list == nullptr) return 1;
  PathRecorder path(*job, SettingsOf(device));
  if (job->pageClipSeen == 0) {
    RecordPageClip(*job, path, *list);
    return 1;
  }
  RecordClipPath(*job, path, list);
  job->currentX = kNoPoint;
  job->currentY = kNoPoint;
  return 1;
}

}  // namespace hdi
