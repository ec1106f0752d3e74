#include "hdiplot/plot/boundaries.h"

#include "hdiplot/geometry/splines.h"
#include "hdiplot/plot/polyline.h"

namespace hdiplot {

namespace {

// These append the points of an edge, including the first and the last.
void AppendEdge(const LineEntity& line, double /*tolerance*/, Ring& ring) {
  ring.push_back(line.start);
  ring.push_back(line.end);
}

void AppendEdge(const ConicArc& arc, double tolerance, Ring& ring) {
  ring.push_back(arc.At(arc.start));
  AppendFlattened(arc, tolerance, ring);
}

void AppendEdge(const ArcEntity& arc, double tolerance, Ring& ring) {
  AppendEdge(ConicOf(arc), tolerance, ring);
}

void AppendEdge(const SplineEntity& spline, double tolerance, Ring& ring) {
  std::vector<Cubic> cubics;
  AppendCubics(spline, tolerance / 2, cubics);
  if (cubics.empty()) return;
  ring.push_back(cubics.front().points[0]);
  for (const Cubic& cubic : cubics) AppendFlattened(cubic, tolerance / 2, ring);
}

Ring RingOfEdges(const std::vector<HatchEdge>& edges, double tolerance) {
  Ring ring;
  for (const HatchEdge& edge : edges) {
    const size_t start = ring.size();
    std::visit([&](const auto& form) { AppendEdge(form, tolerance, ring); }, edge);
    if (start == 0 || ring.size() == start) continue;
    const Vec2 end = ring[start - 1];
    if (Length(ring.back() - end) < Length(ring[start] - end)) {
      std::reverse(ring.begin() + static_cast<std::ptrdiff_t>(start), ring.end());
    }
  }
  return ring;
}

Ring RingOfPolyline(const std::vector<PolyVertex>& vertices, double tolerance) {
  const PolylineEntity closed{vertices, true};
  Ring ring;
  for (size_t i = 0; i < SegmentCount(closed); ++i) {
    const PolySegment segment = SegmentOf(closed, i);
    if (segment.arc) {
      AppendFlattened(*segment.arc, tolerance, ring);
      ring.back() = segment.to;
    } else {
      ring.push_back(segment.to);
    }
  }
  return ring;
}

}  // namespace

std::vector<Ring> BoundaryRings(const HatchEntity& hatch, double tolerance) {
  std::vector<Ring> rings;
  for (const HatchLoop& loop : hatch.loops) {
    Ring ring = loop.polyline.vertices.empty() ? RingOfEdges(loop.edges, tolerance)
                                               : RingOfPolyline(loop.polyline.vertices, tolerance);
    std::erase_if(ring, [](const Vec2& p) { return !IsFinite(p); });
    if (ring.size() > 2) rings.push_back(std::move(ring));
  }
  return rings;
}

Ring FrameOf(const ImageEntity& image) { return Parallelogram(image.corner, image.right, image.up); }

Ring FrameOf(const ViewportEntity& viewport) {
  const Vec2 half{viewport.width / 2, viewport.height / 2};
  return CornersOf(Box{viewport.center - half, viewport.center + half});
}

}  // namespace hdiplot
