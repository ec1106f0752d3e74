// The order is: name and flags; the number of boundary paths (91) and the paths; the number of pattern lines
// (78) and the lines. A path is a polyline, or a number of edges (93), and ends in the handles of the objects
// that it came from (97, 330). Handles may be missing. What a gradient is follows last.
#include "host/hdiplot/dxf/hatch_reader.h"

#include <cmath>
#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "host/hdiplot/dxf/gradient_reader.h"
#include "host/hdiplot/dxf/ocs.h"
#include "host/hdiplot/dxf/spline_check.h"

namespace hdiplot {
namespace {

constexpr uint64_t kPathIsPolyline = 2;

class HatchReader {
 public:
  explicit HatchReader(const DxfObject& object)
      : object_(object), left_(object.groups), plane_(Ocs::Of(object)), elevation_(object.Real(30, 0)) {}

  HatchEntity Read() {
    HatchEntity hatch;
    hatch.solid = object_.Integer(70, 0) != 0;
    while (!At(91)) Skip("the number of boundary paths, group 91");
    const size_t paths = TakeCount(91);
    for (size_t i = 0; i < paths; ++i) hatch.loops.push_back(ReadPath());
    if (At(92)) throw DxfFault{left_.front().line, "HATCH has more boundary paths than it announces"};
    if (!hatch.solid) {
      hatch.lines = ReadPattern();
    } else if (object_.Integer(450, 0) == 1) {
      hatch.gradient = ReadGradient(object_, plane_);
    }
    return hatch;
  }

 private:
  bool At(int code) const { return !left_.empty() && left_.front().code == code; }

  const Group& Next() {
    const Group& group = left_.front();
    left_ = left_.subspan(1);
    return group;
  }

  void Skip(const std::string& until) {
    if (left_.empty()) throw DxfFault{EndLine(), "HATCH ends before " + until};
    Next();
  }

  // The last line of the entity.
  size_t EndLine() const { return object_.groups.empty() ? object_.line : object_.groups.back().ValueLine(); }

  const Group& Take(int code) {
    if (At(code)) return Next();
    const std::string wanted = "group " + std::to_string(code);
    if (left_.empty()) throw DxfFault{EndLine(), "HATCH ends where " + wanted + " should stand"};
    throw DxfFault{left_.front().line, "HATCH has group " + std::to_string(left_.front().code) + " where " +
                                           wanted + " should stand"};
  }

  double TakeReal(int code) { return Take(code).real; }

  // A number of things that follow. Each takes a group at least.
  size_t TakeCount(int code) {
    const Group& group = Take(code);
    if (group.integer >= 0 && static_cast<uint64_t>(group.integer) <= left_.size()) {
      return static_cast<size_t>(group.integer);
    }
    throw DxfFault{group.ValueLine(), "group " + std::to_string(code) + " of HATCH says " +
                                          std::to_string(group.integer) + ", but fewer follow"};
  }

  Vec2 TakePoint(int codeX) {
    const double x = TakeReal(codeX);
    return {x, TakeReal(codeX + 10)};
  }

  HatchLoop ReadPath() {
    HatchLoop loop;
    const auto flags = static_cast<uint64_t>(Take(92).integer);
    if ((flags & kPathIsPolyline) != 0) {
      loop.polyline = ReadPolylinePath();
    } else {
      const size_t edges = TakeCount(93);
      for (size_t i = 0; i < edges; ++i) loop.edges.push_back(ReadEdge());
    }
    if (At(97)) {
      const size_t sources = TakeCount(97);
      for (size_t i = 0; i < sources; ++i) Take(330);
    }
    return loop;
  }

  PolylineEntity ReadPolylinePath() {
    PolylineEntity polyline;
    polyline.closed = true;  // a boundary is, even where group 73 says otherwise
    while (At(72) || At(73)) Next();
    const size_t vertices = TakeCount(93);
    for (size_t i = 0; i < vertices; ++i) {
      PolyVertex vertex;
      vertex.point = TakePoint(10);
      if (At(42)) vertex.bulge = Next().real;
      polyline.vertices.push_back(vertex);
    }
    return plane_.ProjectPolyline(polyline, elevation_);
  }

  HatchEdge ReadEdge() {
    const Group& type = Take(72);
    switch (type.integer) {
      case 1:
        return ReadLineEdge();
      case 2:
        return ReadArcEdge();
      case 3:
        return ReadEllipseEdge();
      case 4:
        return ReadSplineEdge();
      default:
        throw DxfFault{type.ValueLine(), "HATCH has no edges of the type " + std::to_string(type.integer)};
    }
  }

  HatchEdge ReadLineEdge() {
    const Vec2 start = TakePoint(10);
    const Vec2 end = TakePoint(11);
    return LineEntity{plane_.Project(start, elevation_), plane_.Project(end, elevation_)};
  }

  // Angles are written as if the edge ran counter-clockwise, and mirrored when it does not.
  Sweep TakeSweep() {
    const double start = Radians(TakeReal(50));
    const double end = Radians(TakeReal(51));
    const bool counterClockwise = !At(73) || Take(73).integer != 0;
    const Sweep sweep = NormalizedSweep(start, end);
    return counterClockwise ? sweep : Sweep{-sweep.start, -sweep.end};
  }

  HatchEdge ReadArcEdge() {
    const Vec2 center = TakePoint(10);
    const double radius = TakeReal(40);
    const Sweep sweep = TakeSweep();
    return plane_.ProjectArc(center, elevation_, radius, sweep);
  }

  HatchEdge ReadEllipseEdge() {
    const Vec2 center = TakePoint(10);
    const Vec2 major = TakePoint(11);
    const double ratio = TakeReal(40);
    const Sweep sweep = TakeSweep();
    return EllipseFromDiameters(plane_.Project(center, elevation_), plane_.Project(major),
                                plane_.Project(Vec2{-major.y * ratio, major.x * ratio}), sweep);
  }

  HatchEdge ReadSplineEdge() {
    SplineEntity spline;
    const Group& degree = Take(94);
    if (degree.integer < 1 || degree.integer > 25) {
      throw DxfFault{degree.ValueLine(), "a spline cannot have this degree"};
    }
    spline.degree = static_cast<int>(degree.integer);
    while (At(73) || At(74)) Next();
    const size_t knots = TakeCount(95);
    const size_t controlPoints = TakeCount(96);
    for (size_t i = 0; i < knots; ++i) spline.knots.push_back(TakeReal(40));
    for (size_t i = 0; i < controlPoints; ++i) {
      spline.controlPoints.push_back(plane_.Project(TakePoint(10), elevation_));
      if (At(42)) spline.weights.push_back(Next().real);
    }
    SkipFitData();
    CompleteSpline(spline, degree.ValueLine());
    return spline;
  }

  // Newer files have the fit points' number here, under the code that counts source objects after the path.
  void SkipFitData() {
    const bool isFitCount =
        At(97) && left_.size() > 1 &&
        (left_[1].code == 11 || (left_.front().integer == 0 && left_[1].code != 330 && left_[1].code != 92));
    if (!isFitCount) return;
    const size_t points = TakeCount(97);
    for (size_t i = 0; i < points; ++i) TakePoint(11);
    if (At(12)) TakePoint(12);
    if (At(13)) TakePoint(13);
  }

  std::vector<HatchPatternLine> ReadPattern() {
    std::vector<HatchPatternLine> lines;
    while (!left_.empty() && !At(78)) Next();
    const size_t count = left_.empty() ? 0 : TakeCount(78);
    for (size_t i = 0; i < count; ++i) {
      HatchPatternLine line;
      line.angle = Radians(TakeReal(53));
      line.base = TakePoint(43, 44);
      line.offset = TakePoint(45, 46);
      const size_t dashes = TakeCount(79);
      for (size_t k = 0; k < dashes; ++k) line.dashes.push_back(TakeReal(49));
      if (Project(line)) lines.push_back(std::move(line));
    }
    return lines;
  }

  Vec2 TakePoint(int codeX, int codeY) {
    const double x = TakeReal(codeX);
    return {x, TakeReal(codeY)};
  }

  // False for lines that are seen end on.
  bool Project(HatchPatternLine& line) const {
    const Vec2 direction = plane_.Project(Vec2{std::cos(line.angle), std::sin(line.angle)});
    const double stretch = std::hypot(direction.x, direction.y);
    if (stretch < 1e-6) return false;
    if (plane_.GetKind() != Ocs::Kind::kWorld) line.angle = std::atan2(direction.y, direction.x);
    line.base = plane_.Project(line.base, elevation_);
    line.offset = plane_.Project(line.offset);
    for (double& dash : line.dashes) dash *= stretch;
    return true;
  }

  const DxfObject& object_;
  std::span<const Group> left_;
  Ocs plane_;
  double elevation_;
};

}  // namespace

HatchEntity ReadHatch(const DxfObject& object) { return HatchReader(object).Read(); }

}  // namespace hdiplot
