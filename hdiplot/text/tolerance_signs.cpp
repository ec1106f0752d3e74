#include "hdiplot/text/tolerance_signs.h"

#include <algorithm>
#include <vector>

#include "hdiplot/geometry/curves.h"
#include "hdiplot/system/ascii_case.h"
#include "hdiplot/text/font_map.h"

namespace hdiplot {
namespace {

using Stroke = std::vector<Vec2>;

struct Sign {
  char16_t letter;
  char16_t unit;
};

constexpr Sign kSigns[] = {
    {u'a', 0x2220},  // angularity
    {u'b', 0x27C2},  // perpendicularity
    {u'c', 0x23E5},  // flatness
    {u'd', 0x2313},  // profile of a surface
    {u'e', 0x25CB},  // circularity
    {u'f', 0x2225},  // parallelism
    {u'g', 0x232D},  // cylindricity
    {u'h', 0x2197},  // circular run-out
    {u'i', 0x232F},  // symmetry
    {u'j', 0x2316},  // position
    {u'k', 0x2312},  // profile of a line
    {u'l', 0x24C1},  // least material
    {u'm', 0x24C2},  // maximum material
    {u'n', 0x00D8},  // diameter
    {u'p', 0x24C5},  // projected zone
    {u'r', 0x25CE},  // concentricity
    {u's', 0x24C8},  // regardless of feature size
    {u't', 0x2330},  // total run-out
    {u'u', 0x23E4},  // straightness
};

constexpr double kAdvance = 1.3;
constexpr Vec2 kMiddle{0.65, 0.5};

Stroke ArcAbout(Vec2 center, double radius, double from, double to) {
  constexpr int kPieces = 16;
  Stroke arc;
  for (int i = 0; i <= kPieces; ++i) {
    arc.push_back(center + Direction(Radians(from + (to - from) * i / kPieces)) * radius);
  }
  return arc;
}

Stroke Circle(double radius) { return ArcAbout(kMiddle, radius, 0, 360); }

std::vector<Stroke> Arrow(Vec2 from, Vec2 to) {
  constexpr double kHead = 0.3;
  constexpr double kSpread = 25;
  const Vec2 back = Unit(from - to) * kHead;
  const double angle = std::atan2(back.y, back.x);
  const Vec2 left = Direction(angle + Radians(kSpread)) * kHead;
  const Vec2 right = Direction(angle - Radians(kSpread)) * kHead;
  return {{from, to}, {to + left, to, to + right}};
}

// A letter within a circle.
std::vector<Stroke> Circled(Stroke letter) { return {Circle(0.6), std::move(letter)}; }

std::vector<Stroke> StrokesOf(char16_t unit) {
  switch (unit) {
    case 0x2220:
      return {{{1.15, 0.1}, {0.15, 0.1}, {1.05, 0.8}}};
    case 0x27C2:
      return {{{0.1, 0}, {1.2, 0}}, {{0.65, 0}, {0.65, 1}}};
    case 0x23E5:
      return {{{0.05, 0.2}, {0.85, 0.2}, {1.25, 0.8}, {0.45, 0.8}, {0.05, 0.2}}};
    case 0x2313: {
      Stroke arc = ArcAbout({0.65, 0.2}, 0.55, 0, 180);
      arc.push_back(arc.front());
      return {arc};
    }
    case 0x25CB:
      return {Circle(0.5)};
    case 0x2225:
      return {{{0.2, 0}, {0.7, 1}}, {{0.6, 0}, {1.1, 1}}};
    case 0x232D:
      return {Circle(0.33), {{0.05, 0}, {0.45, 1}}, {{0.85, 0}, {1.25, 1}}};
    case 0x2197:
      return Arrow({0.25, 0}, {1.05, 1});
    case 0x2330: {
      std::vector<Stroke> arrows = Arrow({0.1, 0}, {0.7, 1});
      std::ranges::copy(Arrow({0.6, 0}, {1.2, 1}), std::back_inserter(arrows));
      arrows.push_back({{0.1, 0}, {0.6, 0}});
      return arrows;
    }
    case 0x232F:
      return {{{0.3, 0.85}, {1, 0.85}}, {{0.05, 0.5}, {1.25, 0.5}}, {{0.3, 0.15}, {1, 0.15}}};
    case 0x2316:
      return {Circle(0.38), {{0.05, 0.5}, {1.25, 0.5}}, {{0.65, -0.1}, {0.65, 1.1}}};
    case 0x2312:
      return {ArcAbout({0.65, 0.2}, 0.55, 0, 180)};
    case 0x25CE:
      return {Circle(0.5), Circle(0.25)};
    case 0x23E4:
      return {{{0.05, 0.5}, {1.25, 0.5}}};
    case 0x24C1:
      return Circled({{0.47, 0.85}, {0.47, 0.2}, {0.87, 0.2}});
    case 0x24C2:
      return Circled({{0.38, 0.2}, {0.38, 0.82}, {0.65, 0.4}, {0.92, 0.82}, {0.92, 0.2}});
    case 0x24C5:
      return Circled(
          {{0.47, 0.15}, {0.47, 0.85}, {0.75, 0.85}, {0.87, 0.75}, {0.87, 0.6}, {0.75, 0.5}, {0.47, 0.5}});
    case 0x24C8:
      return Circled({{0.88, 0.75},
                      {0.75, 0.85},
                      {0.55, 0.85},
                      {0.43, 0.75},
                      {0.43, 0.62},
                      {0.87, 0.38},
                      {0.87, 0.25},
                      {0.75, 0.15},
                      {0.55, 0.15},
                      {0.42, 0.25}});
    default:
      return {};
  }
}

}  // namespace

bool IsToleranceFont(std::string_view fontFile) { return EqualWithoutCase(FontFileStem(fontFile), "gdt"); }

char16_t ToleranceSign(char16_t letter) {
  const auto* found = std::ranges::find(kSigns, letter, &Sign::letter);
  return found != std::end(kSigns) ? found->unit : letter;
}

std::optional<StrokeGlyph> DrawnToleranceSign(char16_t unit) {
  std::vector<Stroke> strokes = StrokesOf(unit);
  if (strokes.empty()) return std::nullopt;
  return StrokeGlyph{kAdvance, std::move(strokes)};
}

}  // namespace hdiplot
