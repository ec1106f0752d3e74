// The order of the groups: name and flags; the number of boundary paths (91) and the paths; the number of
// pattern lines (78) and the lines; the gradient. A path is a polyline, or a number of edges (93), and ends
// in the handles of its source objects (97, 330), which may be missing.
//
// A gradient: 460 the angle in radians, 461 the shift, 452 whether it is one colour with a tint (462), 453
// the number of colours, 470 the name. Each colour starts with 463 and is an index (63), a true colour (421)
// or both.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "hdiplot/dxf/object_plane.h"
#include "hdiplot/dxf/shape_reader.h"
#include "hdiplot/dxf/table_reader.h"
#include "hdiplot/system/ascii_case.h"

namespace hdiplot {
namespace {

constexpr uint64_t kPathIsPolyline = 2;
constexpr uint64_t kPathIsTextBox = 8;

std::vector<EntityColor> GradientColors(const DxfObject& hatch) {
  constexpr int kColorBegins = 463;
  using Kind = EntityColor::Kind;
  std::vector<EntityColor> colors;
  for (const Group& group : hatch.groups) {
    if (group.code == kColorBegins) {
      colors.push_back({Kind::kIndex, 7});
    } else if (!colors.empty() && group.code == 63 && colors.back().kind == Kind::kIndex) {
      const EntityColor color = IndexedColor(group.Integer());
      if (color.kind == Kind::kIndex) colors.back() = color;
    } else if (!colors.empty() && group.code == 421) {
      colors.back() = TrueColor(group);
    }
  }
  return colors;
}

// An unknown name counts as linear.
HatchGradient::Form GradientForm(std::string_view name) {
  using Form = HatchGradient::Form;
  constexpr std::pair<std::string_view, Form> kNamedForms[] = {{"CYLINDER", Form::kCylinder},
                                                               {"SPHERICAL", Form::kSpherical},
                                                               {"HEMISPHERICAL", Form::kHemispherical},
                                                               {"CURVED", Form::kCurved}};
  const auto found = std::ranges::find(kNamedForms, name, &std::pair<std::string_view, Form>::first);
  return found == std::end(kNamedForms) ? Form::kLinear : found->second;
}

// None without colours.
std::optional<HatchGradient> ReadGradient(const DxfObject& hatch, const Ocs& plane) {
  const std::vector<EntityColor> colors = GradientColors(hatch);
  hatch.CheckCount(hatch.Find(453), colors.size());
  if (colors.empty()) return std::nullopt;

  HatchGradient gradient;
  gradient.first = colors.front();
  gradient.last = colors.back();
  // Some programs write the tinted colour as a second one, too.
  const bool isTinted = hatch.Integer(452, 0) == 1 && colors.size() == 1;
  if (isTinted) gradient.tint = std::clamp(hatch.Real(462, 0), 0.0, 1.0);
  gradient.shift = std::clamp(hatch.Real(461, 0), 0.0, 1.0);

  constexpr std::string_view kInverted = "INV";
  const std::string name = UpperCase(hatch.Text(470));
  gradient.inverted = name.size() > kInverted.size() && name.starts_with(kInverted);
  gradient.form = GradientForm(std::string_view(name).substr(gradient.inverted ? kInverted.size() : 0));

  const Vec2 right = Direction(hatch.Real(460, 0));
  gradient.right = plane.Project(right);
  gradient.up = plane.Project(TurnedLeft(right));
  return gradient;
}

class HatchReader {
 public:
  explicit HatchReader(const DxfObject& object)
      : object_(object), left_(object.groups), plane_(PlaneOf(object)), elevation_(object.Real(30, 0)) {}

  // `solidCode`: the group that says whether the fill is solid.
  HatchEntity Read(int solidCode) {
    HatchEntity hatch;
    hatch.solid = object_.Integer(solidCode, 0) != 0;
    while (!left_.empty() && !At(91)) Next();
    const Group& paths = Take(91);
    while (At(92)) hatch.loops.push_back(ReadPath());
    object_.CheckCount(&paths, hatch.loops.size());
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

  // Of the last group.
  size_t EndPlace() const { return object_.groups.empty() ? object_.place : object_.groups.back().place; }

  const Group& Take(int code) {
    if (At(code)) return Next();
    if (left_.empty()) {
      throw DxfFault{EndPlace(), fmt::format("HATCH ends where group {} should stand", code)};
    }
    const Group& other = left_.front();
    throw DxfFault{other.CodePlace(),
                   fmt::format("HATCH has group {} where group {} should stand", other.code, code)};
  }

  double TakeReal(int code) { return Take(code).number; }

  Vec2 TakePoint(int codeX, int codeY) { return {TakeReal(codeX), TakeReal(codeY)}; }
  Vec2 TakePoint(int codeX) { return TakePoint(codeX, codeX + 10); }

  std::vector<double> TakeReals(int code) {
    std::vector<double> reals;
    while (At(code)) reals.push_back(Next().number);
    return reals;
  }

  HatchLoop ReadPath() {
    HatchLoop loop;
    const auto flags = static_cast<uint64_t>(Take(92).Integer());
    loop.isTextBox = (flags & kPathIsTextBox) != 0;
    if ((flags & kPathIsPolyline) != 0) {
      loop.polyline = ReadPolylinePath();
    } else {
      const Group& edges = Take(93);
      while (At(72)) loop.edges.push_back(ReadEdge());
      object_.CheckCount(&edges, loop.edges.size());
    }
    while (At(97) || At(330)) Next();
    return loop;
  }

  PolylineEntity ReadPolylinePath() {
    PolylineEntity polyline;
    polyline.closed = true;  // whatever group 73 says
    while (At(72) || At(73)) Next();
    const Group& vertices = Take(93);
    while (At(10)) {
      PolyVertex vertex;
      vertex.point = TakePoint(10);
      if (At(42)) vertex.bulge = Next().number;
      polyline.vertices.push_back(vertex);
    }
    object_.CheckCount(&vertices, polyline.vertices.size());
    return ProjectPolyline(plane_, std::move(polyline), elevation_);
  }

  HatchEdge ReadEdge() {
    const Group& type = Take(72);
    if (type.Integer() == 1) return ReadLineEdge();
    if (type.Integer() == 2) return ReadArcEdge();
    if (type.Integer() == 3) return ReadEllipseEdge();
    if (type.Integer() == 4) return ReadSplineEdge();
    throw DxfFault{type.place, fmt::format("HATCH has no edges of the type {}", type.Integer())};
  }

  HatchEdge ReadLineEdge() {
    const Vec2 start = TakePoint(10);
    const Vec2 end = TakePoint(11);
    return LineEntity{plane_.Project(start, elevation_), plane_.Project(end, elevation_)};
  }

  // The angles of a clockwise edge (73 is 0) are negated.
  Sweep TakeSweep() {
    const double start = Radians(TakeReal(50));
    const double end = Radians(TakeReal(51));
    const bool counterClockwise = !At(73) || Take(73).Integer() != 0;
    const Sweep sweep = NormalizedSweep(start, end);
    return counterClockwise ? sweep : Sweep{-sweep.start, -sweep.end};
  }

  HatchEdge ReadArcEdge() {
    const Vec2 center = TakePoint(10);
    const double radius = TakeReal(40);
    const Sweep sweep = TakeSweep();
    return ProjectArc(plane_, center, elevation_, radius, sweep);
  }

  HatchEdge ReadEllipseEdge() {
    const Vec2 center = TakePoint(10);
    const Vec2 major = TakePoint(11);
    const double ratio = TakeReal(40);
    const Sweep sweep = TakeSweep();
    return OnPrincipalAxes({plane_.Project(center, elevation_), plane_.Project(major),
                            plane_.Project(TurnedLeft(major) * ratio), sweep.start, sweep.end});
  }

  HatchEdge ReadSplineEdge() {
    SplineEntity spline;
    const Group& degree = Take(94);
    if (degree.Integer() < 1 || degree.Integer() > 25) {
      throw DxfFault{degree.place, "a spline cannot have this degree"};
    }
    spline.degree = static_cast<int>(degree.Integer());
    while (At(73) || At(74)) Next();
    const Group& knots = Take(95);
    const Group& controlPoints = Take(96);
    spline.knots = TakeReals(40);
    while (At(10)) {
      spline.controlPoints.push_back(plane_.Project(TakePoint(10), elevation_));
      if (At(42)) spline.weights.push_back(Next().number);
    }
    object_.CheckCount(&knots, spline.knots.size());
    object_.CheckCount(&controlPoints, spline.controlPoints.size());
    SkipFitData();
    CompleteSpline(spline, degree.place);
    return spline;
  }

  // Newer files count the fit points here, with the code that counts source objects after the path.
  void SkipFitData() {
    const bool isFitCount = At(97) && left_.size() > 1 &&
                            (left_[1].code == 11 ||
                             (left_.front().Integer() == 0 && left_[1].code != 330 && left_[1].code != 92));
    if (!isFitCount) return;
    Next();
    for (const int code : {11, 12, 13}) {
      while (At(code)) TakePoint(code);
    }
  }

  std::vector<HatchPatternLine> ReadPattern() {
    std::vector<HatchPatternLine> lines;
    while (!left_.empty() && !At(78)) Next();
    if (left_.empty()) return lines;
    const Group& count = Next();
    size_t counted = 0;
    for (; At(53); ++counted) {
      HatchPatternLine line;
      line.angle = Radians(TakeReal(53));
      line.base = TakePoint(43, 44);
      line.offset = TakePoint(45, 46);
      const Group& dashes = Take(79);
      line.dashes = TakeReals(49);
      object_.CheckCount(&dashes, line.dashes.size());
      if (Project(line)) lines.push_back(std::move(line));
    }
    object_.CheckCount(&count, counted);
    return lines;
  }

  // False for lines along the direction of view.
  bool Project(HatchPatternLine& line) const {
    const Vec2 direction = plane_.Project(Direction(line.angle));
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

HatchEntity ReadHatch(const DxfObject& object) { return HatchReader(object).Read(70); }

HatchEntity ReadMPolygon(const DxfObject& object) { return HatchReader(object).Read(71); }

}  // namespace hdiplot
