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

Ring RingOf(const HatchLoop& loop, double tolerance) {
  Ring ring = loop.polyline.vertices.empty() ? RingOfEdges(loop.edges, tolerance)
                                             : RingOfPolyline(loop.polyline.vertices, tolerance);
  std::erase_if(ring, [](const Vec2& p) { return !IsFinite(p); });
  return ring;
}

std::vector<Ring> MappedRings(std::vector<Ring> rings, const Affine& map) {
  for (Ring& ring : rings) ring = Mapped(std::move(ring), map);
  return rings;
}

// What the rings enclose by the even-odd rule, without the boxes.
std::vector<Ring> WithoutBoxes(const std::vector<Ring>& rings, const std::vector<Ring>& boxes) {
  constexpr double kSize = 1e5;  // large for the steps of clipped coordinates
  const Box box = BoxOf(rings);
  const double size = std::max(box.Width(), box.Height());
  if (!(size > 0)) return rings;
  const Affine map = Affine::Scaling(kSize / size, kSize / size) * Affine::Translation(box.low * -1);
  std::vector<Ring> cleared = MappedRings(boxes, map);
  std::erase_if(cleared, [](const Ring& ring) { return BoxOf(ring).Magnitude() > 10 * kSize; });
  return MappedRings(Without(EvenOddArea(MappedRings(rings, map)), cleared), map.Inverse());
}

}  // namespace

std::vector<Ring> BoundaryRings(const HatchEntity& hatch, double tolerance) {
  std::vector<Ring> rings;
  std::vector<Ring> boxes;
  for (const HatchLoop& loop : hatch.loops) {
    Ring ring = RingOf(loop, tolerance);
    if (ring.size() > 2) (loop.isTextBox ? boxes : rings).push_back(std::move(ring));
  }
  return boxes.empty() ? rings : WithoutBoxes(rings, boxes);
}

Ring FrameOf(const ImageEntity& image) { return Parallelogram(image.corner, image.right, image.up); }

Ring FrameOf(const ViewportEntity& viewport) {
  const Vec2 half{viewport.width / 2, viewport.height / 2};
  return CornersOf(Box{viewport.center - half, viewport.center + half});
}

}  // namespace hdiplot
