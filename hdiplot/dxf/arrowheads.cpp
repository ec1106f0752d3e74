#include "hdiplot/dxf/arrowheads.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "hdiplot/geometry/curves.h"

namespace hdiplot {
namespace {

constexpr double kHalf = 0.5;
constexpr double kFlank = 1.0 / 6;                // half the width of a common arrow
constexpr double kDatumFlank = 0.57735026918963;  // of an equilateral triangle
constexpr double kTickWidth = 0.15;

class ArrowWriter {
 public:
  explicit ArrowWriter(Entities& parts) : parts_(parts) {}

  void Write(std::string_view name) {
    if (name == "none") return;
    if (name == "dot") return Dot(kHalf), Line({-kHalf, 0}, {-1, 0});
    if (name == "dotsmall") return Dot(kHalf / 4);
    if (name == "dotblank") return Circle(kHalf), Line({-kHalf, 0}, {-1, 0});
    if (name == "small") return Circle(kHalf / 2);
    if (name == "origin") return Circle(kHalf), Line({0, 0}, {-1, 0});
    if (name == "origin2") return Circle(kHalf), Circle(kHalf / 2), Line({-kHalf, 0}, {-1, 0});
    if (name == "open") return Open(kFlank);
    if (name == "open90") return Open(1, kHalf);
    if (name == "open30") return Open(std::tan(Radians(15)));
    if (name == "closed") return Outline({{-1, kFlank}, {0, 0}, {-1, -kFlank}}), Line({0, 0}, {-1, 0});
    if (name == "closedblank") return Outline({{-1, kFlank}, {0, 0}, {-1, -kFlank}});
    if (name == "oblique") return Line({-kHalf, -kHalf}, {kHalf, kHalf});
    if (name == "archtick") return Tick();
    if (name == "boxblank") return Outline(Square()), Line({-kHalf, 0}, {-1, 0});
    if (name == "boxfilled") return Area(Square()), Line({-kHalf, 0}, {-1, 0});
    if (name == "datumblank") return Outline({{0, kDatumFlank}, {0, -kDatumFlank}, {-1, 0}});
    if (name == "datumfilled") return Area({{0, kDatumFlank}, {0, -kDatumFlank}, {-1, 0}});
    if (name == "integral") return Integral();
    Area({{0, 0}, {-1, kFlank}, {-1, -kFlank}});
  }

 private:
  static std::vector<Vec2> Square() {
    return {{-kHalf, -kHalf}, {kHalf, -kHalf}, {kHalf, kHalf}, {-kHalf, kHalf}};
  }

  template <typename AnyShape>
  void Add(AnyShape&& shape) {
    parts_.emplace_back(ByBlockAttributes(), std::forward<AnyShape>(shape));
  }
  void Line(Vec2 from, Vec2 to) { Add(LineEntity{from, to}); }
  void Area(std::vector<Vec2> corners) { Add(SolidEntity{std::move(corners)}); }
  void Circle(double radius) { Add(ArcEntity{{}, radius, 0, kWholeTurn}); }

  void Outline(const std::vector<Vec2>& corners) {
    PolylineEntity outline;
    outline.closed = true;
    for (const Vec2 corner : corners) outline.vertices.push_back({corner});
    Add(std::move(outline));
  }

  void Dot(double radius) {
    HatchEntity area;
    area.solid = true;
    area.loops.emplace_back().edges.emplace_back(ArcEntity{{}, radius, 0, kWholeTurn});
    Add(std::move(area));
  }

  void Open(double flank, double length = 1) {
    flank *= length;
    Line({-length, flank}, {0, 0});
    Line({0, 0}, {-length, -flank});
    Line({0, 0}, {-1, 0});
  }

  void Tick() {
    PolylineEntity tick;
    for (const double at : {-kHalf, kHalf}) tick.vertices.push_back({{at, at}, 0, kTickWidth, kTickWidth});
    Add(std::move(tick));
  }

  void Integral() {
    const double radius = std::sqrt(kHalf) / 2;
    Add(ArcEntity{{-radius, 0}, radius, kWholeTurn * 3 / 4, kWholeTurn});
    Add(ArcEntity{{radius, 0}, radius, kWholeTurn / 4, kWholeTurn / 2});
  }

  Entities& parts_;
};

std::string_view ArrowName(std::string_view block) {
  return block.starts_with('_') ? block.substr(1) : block;
}

}  // namespace

bool CutsLine(std::string_view block) {
  constexpr std::string_view kAtEnd[] = {"none", "oblique", "archtick", "dotsmall", "small", "integral"};
  return std::ranges::find(kAtEnd, ArrowName(block)) == std::end(kAtEnd);
}

void AppendArrowhead(std::string_view block, Entities& parts) { ArrowWriter(parts).Write(ArrowName(block)); }

Attributes ByBlockAttributes() {
  Attributes attributes;
  attributes.color = {EntityColor::Kind::kByBlock};
  attributes.lineType = Name(&kByBlock);
  attributes.lineWeight = kLineWeightByBlock;
  attributes.alpha = {EntityAlpha::Kind::kByBlock};
  return attributes;
}

}  // namespace hdiplot
