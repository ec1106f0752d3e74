// Opaque bands are painted on top of each other, so that no paper shows between them.
#include "hdiplot/plot/gradient.h"

#include <cstdlib>
#include <utility>

#include "hdiplot/geometry/curves.h"

namespace hdiplot {

namespace {

using Form = HatchGradient::Form;

constexpr size_t kMostBands = 64;

uint8_t Blended(uint8_t first, uint8_t last, double part) {
  return static_cast<uint8_t>(std::lround(first + (last - first) * part));
}

Rgb Blended(Rgb first, Rgb last, double part) {
  return {Blended(first.red, last.red, part), Blended(first.green, last.green, part),
          Blended(first.blue, last.blue, part)};
}

Rgb Tinted(Rgb color, double tint) {
  constexpr Rgb kBlack{0, 0, 0};
  constexpr Rgb kWhite{255, 255, 255};
  return tint < 0.5 ? Blended(kBlack, color, 2 * tint) : Blended(color, kWhite, 2 * tint - 1);
}

int Difference(Rgb a, Rgb b) {
  return std::max({std::abs(a.red - b.red), std::abs(a.green - b.green), std::abs(a.blue - b.blue)});
}

// With a gable: readers that snap rectangles to whole pixels would make adjacent bands overlap.
Ring Strip(Vec2 low, Vec2 high) {
  const double top = high.y + (high.y - low.y) / 8;
  return {low, {high.x, low.y}, high, {(low.x + high.x) / 2, top}, {low.x, high.y}};
}

Ring Disc(Vec2 center, double radius, double tolerance) {
  Ring ring;
  AppendFlattened(CircularArc(center, radius, {0, kWholeTurn}), tolerance, ring);
  return ring;
}

double FarthestCorner(const Box& box, Vec2 from) {
  const Vec2 reach{std::max(from.x - box.low.x, box.high.x - from.x),
                   std::max(from.y - box.low.y, box.high.y - from.y)};
  return Length(reach);
}

// The areas of a gradient over an axis-aligned box. Straight ones extend to the sides of `around`.
class Nesting {
 public:
  Nesting(const HatchGradient& gradient, const Box& box, const Box& around, double tolerance)
      : form_(gradient.form), box_(box), around_(around), tolerance_(tolerance) {
    half_ = (box.high - box.low) * 0.5;
    shift_ = Vec2{-half_.x, half_.y} * (gradient.shift / 2);
    center_ = box.low + half_ + shift_;
  }

  // The area from the part `from` on, above 0 and below 1, where 1 is the last colour.
  [[nodiscard]] Ring AreaFrom(double from) const {
    switch (form_) {
      case Form::kLinear:
        return Strip({box_.low.x + shift_.x + 2 * half_.x * from, around_.low.y}, around_.high);
      case Form::kCylinder: {
        const double reach = (half_.x + std::abs(shift_.x)) * (1 - from);
        return Strip({center_.x - reach, around_.low.y}, {center_.x + reach, around_.high.y});
      }
      case Form::kSpherical:
        return DiscAround(center_, 0, from);
      case Form::kHemispherical:
        return DiscAround({center_.x, box_.low.y + shift_.y}, 0, from);
      case Form::kCurved: {
        // Arcs about a point far below, so that they bend slightly.
        const double below = 2 * half_.y + half_.x;
        return DiscAround({center_.x, box_.low.y + shift_.y - below}, below - shift_.y, from);
      }
    }
    return {};
  }

 private:
  // A circle, from the radius of the box's farthest corner at 0 to `smallest` at 1.
  [[nodiscard]] Ring DiscAround(Vec2 center, double smallest, double from) const {
    const double largest = FarthestCorner(box_, center);
    return Disc(center, largest + (smallest - largest) * from, tolerance_);
  }

  Form form_;
  Box box_;
  Box around_;
  double tolerance_;
  Vec2 half_;
  Vec2 shift_;
  Vec2 center_;
};

void AddRing(Canvas& canvas, const Ring& ring, const Affine& map) {
  canvas.BeginRing();
  for (const Vec2& p : ring) canvas.RingPoint(map(p));
}

}  // namespace

std::vector<Rgb> BandColors(const HatchGradient& gradient, const Style& style, size_t most) {
  Rgb first = style.ink->ShadeOf(style.Resolved(gradient.first));
  Rgb last = style.ink->ShadeOf(style.Resolved(gradient.last));
  if (gradient.tint >= 0) last = Tinted(first, gradient.tint);
  if (gradient.inverted) std::swap(first, last);
  const size_t count = std::min({static_cast<size_t>(Difference(first, last)) + 1, most, kMostBands});
  std::vector<Rgb> colors{first};
  for (size_t i = 1; i < count; ++i) {
    colors.push_back(Blended(first, last, static_cast<double>(i) / static_cast<double>(count - 1)));
  }
  return colors;
}

std::vector<Ring> NestedOutlines(const HatchGradient& gradient, const std::vector<Ring>& rings, size_t count,
                                 double tolerance) {
  const Affine toDrawing = Affine::OfAxes(gradient.right, gradient.up, {});
  if (std::abs(toDrawing.Determinant()) < 1e-6) return {};
  const Affine fromDrawing = toDrawing.Inverse();
  Box box;
  for (const Ring& ring : rings) {
    for (const Vec2& p : ring) box.Add(fromDrawing(p));
  }
  if (!(box.Width() > 0 && box.Height() > 0)) return {};

  // Keeps the outline of the first area, and sides that areas share, out of sight: readers that draw
  // everything at least a pixel wide would show such a side once for each band.
  const Vec2 room = (box.high - box.low) * 0.5;
  const Box around{box.low - room, box.high + room};
  std::vector<Ring> outlines{CornersOf(around)};
  const Nesting nesting(gradient, box, around, tolerance);
  for (size_t i = 1; i < count; ++i) {
    outlines.push_back(nesting.AreaFrom(static_cast<double>(i) / static_cast<double>(count)));
  }
  for (Ring& outline : outlines) outline = Mapped(std::move(outline), toDrawing);
  return outlines;
}

void FillBands(Canvas& canvas, const GradientBands& bands, const std::vector<Ring>& rings,
               const Affine& map) {
  std::vector<Ring> onPaper = rings;
  for (Ring& ring : onPaper) {
    ring = Mapped(std::move(ring), map);
    if (std::erase_if(ring, [](Vec2 p) { return !Canvas::IsPlottable(p); }) > 0) canvas.NoteMissing();
  }
  if (!canvas.ClipTo(EvenOddArea(onPaper))) return;
  for (size_t i = 0; i < bands.outlines.size(); ++i) {
    canvas.UseFill(bands.colors[i]);
    AddRing(canvas, bands.outlines[i], map);
    // A transparent band must not overlap the next one.
    if (!bands.opaque && i + 1 < bands.outlines.size()) AddRing(canvas, bands.outlines[i + 1], map);
    canvas.FillRings(hdi::kFillAlternate);
  }
  canvas.Unclip();
}

}  // namespace hdiplot
