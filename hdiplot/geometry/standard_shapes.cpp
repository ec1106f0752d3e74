#include "hdiplot/geometry/standard_shapes.h"

#include <algorithm>

#include "hdiplot/geometry/curves.h"

namespace hdiplot {
namespace {

std::vector<Vec2> Arc(Vec2 center, double radius, double from, double to) {
  constexpr int kPieces = 24;
  std::vector<Vec2> arc;
  for (int i = 0; i <= kPieces; ++i) {
    arc.push_back(center + Direction(Radians(from + (to - from) * i / kPieces)) * radius);
  }
  return arc;
}

// One half of a loop of insulation: up, over and down again, wider above than at its foot.
std::vector<Vec2> Loop() {
  constexpr double kTop = 2;
  std::vector<Vec2> loop{{0, 0}, {0.6, kTop}};
  const std::vector<Vec2> bow = Arc({1, kTop}, 0.4, 180, 0);
  loop.insert(loop.end(), bow.begin(), bow.end());
  loop.push_back({2, 0});
  return loop;
}

struct NamedShape {
  std::string_view name;
  int number;
  ShapeStrokes (*strokes)();
};

constexpr NamedShape kShapes[] = {
    {"TRACK1", 130,
     [] {
       return ShapeStrokes{{{0, -0.5}, {0, 0.5}}};
     }},
    {"ZIG", 131,
     [] {
       return ShapeStrokes{{{0, 0}, {1, 1}, {2, 0}}};
     }},
    {"BOX", 132,
     [] {
       return ShapeStrokes{{{0, -1}, {2, -1}, {2, 1}, {0, 1}, {0, -1}}};
     }},
    {"CIRC1", 133,
     [] {
       return ShapeStrokes{Arc({1, 0}, 1, 0, 360)};
     }},
    {"BAT", 134, [] { return ShapeStrokes{Loop()}; }},
};

template <typename Key>
ShapeStrokes Find(const Key& key, Key NamedShape::*member) {
  const auto* found = std::ranges::find(kShapes, key, member);
  return found != std::end(kShapes) ? found->strokes() : ShapeStrokes();
}

}  // namespace

ShapeStrokes StandardShape(int number) { return Find(number, &NamedShape::number); }

ShapeStrokes StandardShape(std::string_view name) { return Find(name, &NamedShape::name); }

}  // namespace hdiplot
