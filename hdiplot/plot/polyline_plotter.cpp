#include "hdiplot/plot/polyline_plotter.h"

namespace hdiplot {

namespace {

constexpr double kCurveTolerance = 0.02;  // dots
constexpr double kFlatTolerance = 0.25;   // dots

bool HasBulge(const PolylineEntity& polyline, size_t first, size_t count) {
  for (size_t i = first; i < first + count; ++i) {
    if (polyline.vertices[i].bulge != 0) return true;
  }
  return false;
}

}  // namespace

void PolylinePlotter::Plot(const PolylineEntity& polyline, const Affine& map, const Stroke& stroke) {
  const size_t count = SegmentCount(polyline);
  if (count == 0) {
    canvas_.UseStroke(stroke);
    if (!polyline.vertices.empty()) canvas_.Dot(map(polyline.vertices[0].point));
    return;
  }
  const auto width = ConstantWidth(polyline);
  if (width == 0 && stroke.lineType != nullptr && count > 1 && !polyline.continuousPattern) {
    PlotSegments(polyline, map, stroke);
  } else if (width == 0) {
    canvas_.UseStroke(stroke);
    StrokeRun(polyline, {0, count, polyline.closed ? RunEnd::kClosed : RunEnd::kOpen}, map);
  } else if (width && map.IsSimilarity()) {
    PlotWide(polyline, map, stroke, *width * map.LargestScale());
  } else {
    PlotTapered(polyline, map, stroke);
  }
}

// The pattern starts anew at each vertex; segments that are shorter than it are continuous.
void PolylinePlotter::PlotSegments(const PolylineEntity& polyline, const Affine& map, const Stroke& stroke) {
  const double pattern = PatternLength(stroke);
  Stroke solid = stroke;
  solid.lineType = nullptr;
  const size_t count = SegmentCount(polyline);
  size_t shortOnes = 0;  // just before `i`
  const auto strokeShort = [&](size_t end) {
    if (shortOnes == 0) return;
    canvas_.UseStroke(solid);
    StrokeRun(polyline, {end - shortOnes, shortOnes, RunEnd::kOpen}, map);
    shortOnes = 0;
  };
  for (size_t i = 0; i < count; ++i) {
    const PolySegment segment = SegmentOf(polyline, i);
    const double chord = Length(map(segment.to) - map(segment.from));
    if (chord < pattern && !segment.arc) {
      ++shortOnes;
      continue;
    }
    strokeShort(i);
    canvas_.UseStroke(stroke);
    canvas_.SeparatePath();
    StrokeRun(polyline, {i, 1, RunEnd::kOpen}, map);
  }
  strokeShort(count);
}

void PolylinePlotter::PlotWide(const PolylineEntity& polyline, const Affine& map, Stroke stroke,
                               double width) {
  stroke.width = PenWidth(width);
  stroke.ends = LineEnds::kFlat;
  canvas_.UseStroke(stroke);
  // A line that happens to continue from here must not be joined to this one.
  canvas_.SeparatePath();
  // The driver does not close stroked paths. A dashed segment must not be drawn twice.
  RunEnd end = RunEnd::kOpen;
  if (polyline.closed) end = stroke.lineType == nullptr ? RunEnd::kClosedAround : RunEnd::kClosed;
  StrokeRun(polyline, {0, SegmentCount(polyline), end}, map);
  canvas_.SeparatePath();
}

void PolylinePlotter::PlotTapered(const PolylineEntity& polyline, const Affine& map, const Stroke& stroke) {
  const size_t count = SegmentCount(polyline);
  size_t thin = 0;  // pending segments without a width, just before `i`
  const auto strokeThin = [&](size_t end) {
    if (thin == 0) return;
    canvas_.UseStroke(stroke);
    StrokeRun(polyline, {end - thin, thin, RunEnd::kOpen}, map);
    thin = 0;
  };
  for (size_t i = 0; i < count; ++i) {
    const PolyVertex& vertex = polyline.vertices[i];
    if (vertex.startWidth == 0 && vertex.endWidth == 0) {
      ++thin;
      continue;
    }
    strokeThin(i);
    canvas_.UseFill(stroke.color);
    FillSegment(polyline, i, map);
  }
  strokeThin(count);
}

void PolylinePlotter::FillSegment(const PolylineEntity& polyline, size_t index, const Affine& map) {
  canvas_.BeginRing();
  for (const Vec2& p : SegmentOutline(polyline, index, kFlatTolerance / map.LargestScale())) {
    canvas_.RingPoint(map(p));
  }
  // The inner rim of a wide, tight bend crosses itself and must not leave a hole.
  canvas_.FillRings(polyline.vertices[index].bulge == 0 ? hdi::kFillAlternate : hdi::kFillWinding);
}

void PolylinePlotter::StrokeRun(const PolylineEntity& polyline, const Run& run, const Affine& map) {
  if (!HasBulge(polyline, run.first, run.count)) {
    StrokeLines(polyline, run, map);
    return;
  }
  if (!LoadRun(polyline, run, map)) {
    canvas_.NoteMissing();
    return;
  }
  canvas_.BeginPath(ends_[0]);
  for (size_t i = 0; i < run.count; ++i) AddToPath(segments_[i], ends_[i], ends_[i + 1], map);
  if (run.end == RunEnd::kClosedAround) AddToPath(segments_[0], ends_[0], ends_[1], map);
  canvas_.EndPath();
}

void PolylinePlotter::StrokeLines(const PolylineEntity& polyline, const Run& run, const Affine& map) {
  const auto& vertices = polyline.vertices;
  ends_.clear();
  for (size_t i = run.first; i <= run.first + run.count; ++i) {
    ends_.push_back(map(vertices[i < vertices.size() ? i : 0].point));
  }
  if (run.end == RunEnd::kClosedAround) ends_.push_back(ends_[1]);
  canvas_.Polyline(ends_);
}

// Fills `segments_` and `ends_`, with whole dots where lines and curves meet. False when a point or a curve
// is not plottable.
bool PolylinePlotter::LoadRun(const PolylineEntity& polyline, const Run& run, const Affine& map) {
  segments_.clear();
  ends_.clear();
  for (size_t i = 0; i < run.count; ++i) {
    PolySegment& segment = segments_.emplace_back(SegmentOf(polyline, run.first + i));
    ends_.push_back(map(segment.from));
    if (!segment.arc || Canvas::IsPlottable(Transformed(*segment.arc, map))) continue;
    // An arc of so large a circle is either as good as straight or not plottable.
    const double height = std::abs(polyline.vertices[run.first + i].bulge) / 2 *
                          Length(map.Direction(segment.to - segment.from));
    if (!(height <= kFlatTolerance)) return false;
    segment.arc.reset();
  }
  ends_.push_back(map(segments_.back().to));
  if (!std::ranges::all_of(ends_, [](Vec2 p) { return Canvas::IsPlottable(p); })) return false;

  const bool closed = run.end != RunEnd::kOpen;
  const auto isCurve = [&](size_t i) { return segments_[i % run.count].arc.has_value(); };
  for (size_t i = closed ? 0 : 1; i < run.count; ++i) {
    if (isCurve(i + run.count - 1) != isCurve(i)) ends_[i] = canvas_.OnWholeDot(ends_[i]);
  }
  if (closed) ends_.back() = ends_.front();
  return true;
}

void PolylinePlotter::AddToPath(const PolySegment& segment, Vec2 from, Vec2 to, const Affine& map) {
  if (!segment.arc) {
    canvas_.LineTo(to);
    return;
  }
  cubics_.clear();
  AppendCubics(Transformed(*segment.arc, map), kCurveTolerance, cubics_);
  // Control points move along with the ends, which preserves the arc's direction there.
  auto& first = cubics_.front().points;
  auto& last = cubics_.back().points;
  first[1] = first[1] + (from - first[0]);
  last[2] = last[2] + (to - last[3]);
  last[3] = to;
  for (const Cubic& cubic : cubics_) canvas_.CurveTo(cubic.points[1], cubic.points[2], cubic.points[3]);
}

}  // namespace hdiplot
