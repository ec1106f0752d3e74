#include "hdiplot/plot/line_type_signs.h"

#include <algorithm>
#include <cmath>

namespace hdiplot {
namespace {

// Of one line: a line with more would be black with them.
constexpr double kMostSigns = 100000;

constexpr double kRounding = 1;  // dots, of the pattern's length in a pen

// Finds places along a line, in ascending order of their distance from its start.
class LineWalk {
 public:
  explicit LineWalk(std::span<const Vec2> points) : points_(points) {}

  struct Place {
    Vec2 at;
    Vec2 direction;
  };

  // False behind the end.
  bool Find(double distance, Place& place) {
    while (next_ < points_.size()) {
      const Vec2 from = points_[next_ - 1];
      const Vec2 along = points_[next_] - from;
      const double length = Length(along);
      if (length > 0 && distance <= before_ + length) {
        place = {from + along * ((distance - before_) / length), along * (1 / length)};
        return true;
      }
      before_ += length;
      ++next_;
    }
    return false;
  }

 private:
  std::span<const Vec2> points_;
  size_t next_ = 1;
  double before_ = 0;  // the length up to the point before the next one
};

double LengthOf(std::span<const Vec2> points) {
  double length = 0;
  for (size_t i = 1; i < points.size(); ++i) length += Length(points[i] - points[i - 1]);
  return length;
}

// In dots from the pattern's start, which a pen has at its first dash. Below 0: none.
double PlaceOf(const LineTypeSign& sign, const Stroke& stroke, double period) {
  const std::vector<double>& dashes = stroke.lineType->dashes;
  double place = 0;
  const size_t first = FirstDash(dashes);
  for (size_t i = 0; i <= sign.element; ++i) place += std::abs(dashes[i]) * stroke.lineTypeScale;
  for (size_t i = 0; i < first; ++i) place -= std::abs(dashes[i]) * stroke.lineTypeScale;
  return place < 0 ? place + period : place;
}

// The length of the gap behind a sign, in dots.
double GapBehind(const LineTypeSign& sign, const Stroke& stroke) {
  const std::vector<double>& dashes = stroke.lineType->dashes;
  double gap = 0;
  for (size_t i = 1; i < dashes.size(); ++i) {
    const double element = dashes[(sign.element + i) % dashes.size()];
    if (element >= 0) break;
    gap -= element * stroke.lineTypeScale;
  }
  return gap;
}

}  // namespace

// A sign is left out at the end of a line that ends before the sign's gap does.
void LineTypeSigns::Draw(std::span<const Vec2> points, const Stroke& stroke, const Style& style) {
  const double period = PatternLength(stroke);
  if (!(period >= kShortestPattern) || !std::ranges::all_of(points, [](Vec2 p) { return IsFinite(p); }))
    return;
  const double length = LengthOf(points);
  if (!(length / period * static_cast<double>(stroke.lineType->signs.size()) <= kMostSigns)) return;
  for (const LineTypeSign& sign : stroke.lineType->signs) {
    LineWalk walk(points);
    LineWalk::Place place;
    const double last = length - GapBehind(sign, stroke) + kRounding;
    double distance = PlaceOf(sign, stroke, period);
    for (; distance <= last && walk.Find(distance, place); distance += period) {
      DrawAt(place.at, place.direction, sign, stroke, style);
    }
  }
}

// Points are in dots, Y down; the sign's own Y axis points to the left of the line.
void LineTypeSigns::DrawAt(Vec2 at, Vec2 direction, const LineTypeSign& sign, const Stroke& stroke,
                           const Style& style) {
  const auto axes = [&](Vec2 right) {
    right = right * stroke.lineTypeScale;
    return Affine::OfAxes(right, TurnedLeft(right) * -1, at);
  };
  const Vec2 place = axes(direction)(sign.offset);
  const Affine turned = Affine::Translation(place - at) * axes(sign.upright ? Vec2{1, 0} : direction) *
                        Affine::Rotation(sign.rotation);
  if (!sign.text.empty()) {
    plotter_.Plot(BlockOf(sign), turned, style, stroke.width);
    return;
  }
  Stroke solid = stroke;
  solid.lineType = nullptr;
  canvas_.UseStroke(solid);
  for (const auto& line : sign.strokes) {
    points_.clear();
    for (const Vec2& p : line) points_.push_back(turned(p * sign.scale));
    canvas_.Polyline(points_);
  }
}

const TextBlock& LineTypeSigns::BlockOf(const LineTypeSign& sign) {
  const auto [entry, isNew] = blocks_.try_emplace(&sign);
  if (isNew) {
    TextEntity text;
    text.text = sign.text;
    text.style = Name(&sign.style);
    text.height = sign.scale;
    entry->second = texts_.Set(text);
  }
  return entry->second;
}

}  // namespace hdiplot
