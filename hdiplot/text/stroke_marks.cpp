#include "hdiplot/text/stroke_marks.h"

#include <algorithm>

#include "hdiplot/geometry/clipping.h"
#include "hdiplot/geometry/curves.h"

namespace hdiplot {

namespace {

using Strokes = std::vector<std::vector<Vec2>>;

std::vector<Vec2> Circle(Vec2 center, double radius) {
  constexpr int kSides = 16;
  std::vector<Vec2> points;
  points.reserve(kSides + 1);
  for (int i = 0; i < kSides; ++i) {
    points.push_back(center + Direction(kWholeTurn * i / kSides) * radius);
  }
  points.push_back(points.front());
  return points;
}

// Over the point (0, 0), a gap away from the letter below.
Strokes AccentAbove(char16_t accent) {
  switch (accent) {
    case 0x0300:  // grave
      return {{{-0.15, 0.25}, {0.08, 0.05}}};
    case 0x0301:  // acute
      return {{{0.15, 0.25}, {-0.08, 0.05}}};
    case 0x0302:  // circumflex
      return {{{-0.18, 0.05}, {0, 0.25}, {0.18, 0.05}}};
    case 0x0303:  // tilde
      return {{{-0.22, 0.08}, {-0.14, 0.18}, {-0.05, 0.18}, {0.05, 0.08}, {0.14, 0.08}, {0.22, 0.18}}};
    case 0x0304:  // macron
      return {{{-0.2, 0.12}, {0.2, 0.12}}};
    case 0x0306:  // breve
      return {{{-0.18, 0.24}, {-0.11, 0.1}, {0, 0.05}, {0.11, 0.1}, {0.18, 0.24}}};
    case 0x0307:  // dot
      return {Circle({0, 0.12}, 0.03)};
    case 0x0308:  // diaeresis
      return {Circle({-0.15, 0.12}, 0.03), Circle({0.15, 0.12}, 0.03)};
    case 0x030A:  // ring
      return {Circle({0, 0.14}, 0.11)};
    case 0x030B:  // double acute
      return {{{0, 0.25}, {-0.15, 0.05}}, {{0.22, 0.25}, {0.07, 0.05}}};
    case 0x030C:  // caron
      return {{{-0.18, 0.25}, {0, 0.05}, {0.18, 0.25}}};
    default:
      return {};
  }
}

// Below the point (0, 0) of the base line.
Strokes AccentBelow(char16_t accent) {
  switch (accent) {
    case 0x0326:  // comma
      return {{{0.04, -0.08}, {0.04, -0.15}, {-0.05, -0.25}}};
    case 0x0327:  // cedilla
      return {{{0, 0}, {0, -0.1}, {0.1, -0.16}, {0.08, -0.26}, {-0.06, -0.3}, {-0.13, -0.26}}};
    case 0x0328:  // ogonek
      return {{{0.12, 0}, {0.02, -0.12}, {0.04, -0.25}, {0.18, -0.28}}};
    default:
      return {};
  }
}

}  // namespace

std::optional<StrokeGlyph> DrawnSign(char16_t unit) {
  switch (unit) {
    case 0x00B0:  // degree
      return StrokeGlyph{0.6, {Circle({0.3, 0.82}, 0.17)}};
    case 0x00B1:  // plus-minus
      return StrokeGlyph{1.2,
                         {{{0.15, 0.55}, {1.05, 0.55}}, {{0.6, 0.15}, {0.6, 0.95}}, {{0.15, 0}, {1.05, 0}}}};
    case 0x00D7:  // times
      return StrokeGlyph{1.05, {{{0.2, 0.1}, {0.85, 0.75}}, {{0.2, 0.75}, {0.85, 0.1}}}};
    case 0x00D8:  // O with stroke, and the signs that look like it
    case 0x2205:
    case 0x2300:
      return StrokeGlyph{1.1, {Circle({0.55, 0.5}, 0.42), {{0.1, -0.1}, {1, 1.1}}}};
    default:
      return std::nullopt;
  }
}

bool AddAccent(char16_t accent, StrokeGlyph& glyph) {
  const Strokes above = AccentAbove(accent);
  const Strokes below = AccentBelow(accent);
  if (above.empty() && below.empty()) return false;
  Box box = BoxOf(glyph.strokes);
  if (box.Empty()) box.Add({glyph.advance / 2, 0});
  constexpr double kGap = 0.06;
  const Vec2 place{(box.low.x + box.high.x) / 2, above.empty() ? 0 : box.high.y + kGap};
  for (const auto& stroke : above.empty() ? below : above) {
    auto& points = glyph.strokes.emplace_back();
    for (const Vec2& p : stroke) points.push_back(place + p);
  }
  return true;
}

}  // namespace hdiplot
