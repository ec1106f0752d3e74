// The places of arrowheads and texts are those of the usual styles: arrowheads between the extension lines
// unless there is no room, the text on the dimension line, which it interrupts, or above it.
#include "hdiplot/dxf/dimension_block.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "hdiplot/dxf/dimension_text.h"
#include "hdiplot/dxf/table_reader.h"
#include "hdiplot/geometry/curves.h"

namespace hdiplot {
namespace {

double AngleOf(Vec2 v) { return std::atan2(v.y, v.x); }

// Turned by half a turn if letters would stand on their heads.
Vec2 Readable(Vec2 direction) {
  constexpr double kRoom = 1e-9;
  const bool isLeft = direction.x < -kRoom || (direction.x <= kRoom && direction.y < 0);
  return isLeft ? direction * -1 : direction;
}

// Of a text in an average font, in heights. The letters of an MTEXT's codes count little.
double EstimatedWidth(const std::string& text) {
  constexpr double kLetter = 0.85;
  const auto count = std::ranges::count_if(
      text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U && c != '\\' && c != ';'; });
  return kLetter * static_cast<double>(count);
}

class DimensionDrawing {
 public:
  DimensionDrawing(const Dimension& dimension, const DimensionParts& parts)
      : dimension_(dimension),
        style_(dimension.style),
        parts_(parts),
        scale_(style_.scale > 0 ? style_.scale : 1),
        arrowSize_(std::max(0.0, style_.arrowSize) * scale_),
        gap_(std::abs(style_.gap) * scale_),
        height_(parts.fixedTextHeight > 0 ? parts.fixedTextHeight : style_.textHeight * scale_) {
    if (!(height_ > 0)) height_ = 1;
    lineLook_ = LookOf(style_.lineColor, style_.lineWeight);
    extensionLook_ = LookOf(style_.extensionColor, style_.extensionWeight);
    textLook_ = LookOf(style_.textColor, kLineWeightByBlock);
  }

  Entities Draw() {
    using Kind = Dimension::Kind;
    switch (dimension_.kind) {
      case Kind::kRotated:
        DrawLinear(dimension_.direction);
        break;
      case Kind::kAligned:
        DrawLinear(Unit(dimension_.second - dimension_.first));
        break;
      case Kind::kAngular:
        DrawBetweenLines();
        break;
      case Kind::kThreePoints:
        DrawAngle(dimension_.third, dimension_.first, dimension_.second, dimension_.line);
        break;
      case Kind::kRadius:
        DrawRadius();
        break;
      case Kind::kDiameter:
        DrawDiameter();
        break;
      case Kind::kOrdinate:
        DrawOrdinate();
    }
    return std::move(entities_);
  }

 private:
  static Attributes LookOf(double color, double weight) {
    Attributes look;
    look.color = IndexedColor(std::llround(color));
    look.lineType = Name(&kByBlock);
    look.lineWeight = static_cast<int16_t>(std::clamp(weight, -3.0, 211.0));
    look.alpha.kind = EntityAlpha::Kind::kByBlock;
    return look;
  }

  void AddLine(Vec2 from, Vec2 to, const Attributes& look) {
    if (from != to) entities_.emplace_back(look, LineEntity{from, to});
  }

  // Points along `direction`.
  void AddArrow(Vec2 tip, Vec2 direction, const Name& block) {
    if (style_.tickSize > 0) {
      const Vec2 arm = Unit(direction + TurnedLeft(direction)) * (style_.tickSize * scale_);
      AddLine(tip - arm, tip + arm, lineLook_);
    } else if (!block.empty()) {
      InsertEntity insert;
      insert.block = block;
      insert.at = tip;
      insert.scaleX = insert.scaleY = arrowSize_;
      insert.rotation = AngleOf(direction);
      entities_.emplace_back(lineLook_, std::move(insert));
    } else if (arrowSize_ > 0) {
      const Vec2 base = tip - direction * arrowSize_;
      const Vec2 half = TurnedLeft(direction) * (arrowSize_ / 6);
      entities_.emplace_back(lineLook_, SolidEntity{{tip, base + half, base - half}});
    }
  }

  // Empty for a text that is suppressed, by a blank.
  void SetText(const std::string& value) {
    constexpr std::string_view kValue = "<>";
    text_ = dimension_.text.empty() ? value : dimension_.text;
    if (const size_t at = text_.find(kValue); at != std::string::npos)
      text_.replace(at, kValue.size(), value);
    if (text_ == " ") text_.clear();
  }

  void AddText(Vec2 place, Vec2 right, int attachment) {
    if (text_.empty()) return;
    MTextEntity text;
    text.text = text_;
    text.style = parts_.textStyle;
    text.place = place;
    text.attachment = attachment;
    text.right = right;
    text.up = TurnedLeft(right);
    text.height = height_;
    entities_.emplace_back(textLook_, std::move(text));
  }

  [[nodiscard]] Vec2 TextDirection(Vec2 along) const {
    if (dimension_.textRotation) return Direction(*dimension_.textRotation);
    return style_.textHorizontal != 0 ? Vec2{1, 0} : Readable(along);
  }

  [[nodiscard]] double TextWidth() const { return EstimatedWidth(text_) * height_; }

  // Puts the text on the line through `middle` or above it, or where the dimension says. Returns half the
  // length of the gap that it needs in the line; 0 if it is clear of the line.
  double PlaceText(Vec2 middle, Vec2 along) {
    const Vec2 right = TextDirection(along);
    const Vec2 up = TurnedLeft(Readable(along));
    const Vec2 usual = style_.textAbove != 0 ? middle + up * (gap_ + height_ / 2) : middle;
    const Vec2 place = dimension_.textMiddle.value_or(usual);
    AddText(place, right, kMiddleCenter);
    const bool isClear = std::abs(Dot(place - middle, up)) > height_ / 2;
    if (text_.empty() || isClear) return 0;
    return std::abs(Dot(right, along)) * TextWidth() / 2 + std::abs(Cross(right, along)) * height_ / 2 + gap_;
  }

  // A straight line with the text in it.
  void AddDimensionLine(Vec2 from, Vec2 to) {
    const Vec2 along = Unit(to - from);
    const Vec2 middle = Between(from, to, 0.5);
    const double half = Length(to - from) / 2;
    const double cut = PlaceText(middle, along);
    // Where the text lies along the line.
    const double at = dimension_.textMiddle ? Dot(*dimension_.textMiddle - middle, along) : 0;
    const auto part = [&](double start, double end) {
      start = std::clamp(start, -half, half);
      end = std::clamp(end, -half, half);
      if (start < end) AddLine(middle + along * start, middle + along * end, lineLook_);
    };
    if (style_.hidesLine1 == 0) part(-half, cut > 0 ? at - cut : 0);
    if (style_.hidesLine2 == 0) part(cut > 0 ? at + cut : 0, half);
  }

  // From the measured point to the dimension line at `end`.
  void AddExtension(Vec2 from, Vec2 end, Vec2 fallback) {
    const double length = Length(end - from);
    const Vec2 direction = length > 0 ? (end - from) * (1 / length) : fallback;
    const double offset = std::min(style_.extensionOffset * scale_, length);
    AddLine(from + direction * offset, end + direction * (style_.extensionBeyond * scale_), extensionLook_);
  }

  void DrawLinear(Vec2 along) {
    const Vec2 across = TurnedLeft(along);
    const Vec2 extension = dimension_.oblique != 0 ? Direction(AngleOf(along) + dimension_.oblique) : across;
    const double slope = Dot(extension, across);
    if (along == Vec2{} || std::abs(slope) < 1e-6) return;
    const auto onLine = [&](Vec2 p) { return p + extension * (Dot(dimension_.line - p, across) / slope); };
    Vec2 from = onLine(dimension_.first);
    Vec2 to = onLine(dimension_.second);
    SetText(LengthText(std::abs(Dot(dimension_.second - dimension_.first, along)), "", style_));
    if (style_.hidesExtension1 == 0) AddExtension(dimension_.first, from, across);
    if (style_.hidesExtension2 == 0) AddExtension(dimension_.second, to, across);
    const Vec2 direction = from == to ? along : Unit(to - from);
    const bool isInside = style_.tickSize > 0 || Length(to - from) > 3 * arrowSize_;
    AddArrow(from, direction * (isInside ? -1.0 : 1.0), parts_.arrow1);
    AddArrow(to, direction * (isInside ? 1.0 : -1.0), parts_.arrow2);
    const double beyond = style_.tickSize > 0 ? style_.lineBeyond * scale_ : isInside ? 0 : 2 * arrowSize_;
    AddDimensionLine(from - direction * beyond, to + direction * beyond);
  }

  // An arc about `center` through `place`, from the direction of `first` to that of `second` or the other way
  // round.
  void DrawAngle(Vec2 center, Vec2 first, Vec2 second, Vec2 place) {
    const double radius = Length(place - center);
    if (!(radius > 0) || first == center || second == center) return;
    Sweep sweep = NormalizedSweep(AngleOf(first - center), AngleOf(second - center));
    const double at = NormalizedSweep(sweep.start, AngleOf(place - center)).end;
    if (at > sweep.end) {
      std::swap(first, second);
      sweep = NormalizedSweep(sweep.end, sweep.start);
    }
    const double span = sweep.end - sweep.start;
    SetText(AngleText(span, style_));
    const Vec2 from = center + Direction(sweep.start) * radius;
    const Vec2 to = center + Direction(sweep.end) * radius;
    for (const auto& [point, end] : {std::pair(first, from), std::pair(second, to)}) {
      if (Length(point - center) < radius) AddExtension(point, end, Unit(end - center));
    }
    const double turn = span * radius > 3 * arrowSize_ ? 1 : -1;
    AddArrow(from, TurnedLeft(from - center) * (-turn / radius), parts_.arrow1);
    AddArrow(to, TurnedLeft(to - center) * (turn / radius), parts_.arrow2);
    const Vec2 outward = Direction((sweep.start + sweep.end) / 2);
    const double cut = PlaceText(center + outward * radius, TurnedLeft(outward)) / radius;
    const double text = dimension_.textMiddle
                            ? NormalizedSweep(sweep.start, AngleOf(*dimension_.textMiddle - center)).end
                            : (sweep.start + sweep.end) / 2;
    const auto part = [&](double start, double end) {
      if (start < end) entities_.emplace_back(lineLook_, ArcEntity{center, radius, start, end});
    };
    part(sweep.start, std::min(text - cut, sweep.end));
    part(std::min(text + cut, sweep.end), sweep.end);
  }

  // The angle between two lines that the arc lies in.
  void DrawBetweenLines() {
    const Vec2 along1 = dimension_.second - dimension_.first;
    const Vec2 along2 = dimension_.line - dimension_.third;
    const double turn = Cross(along1, along2);
    if (std::abs(turn) <= kRoundingNoise * Length(along1) * Length(along2)) return;
    const Vec2 center =
        dimension_.first + along1 * (Cross(dimension_.third - dimension_.first, along2) / turn);
    // Of each line the side that is seen from the arc's place: its coordinates along both lines are positive.
    const Vec2 place = dimension_.arc - center;
    const double side1 = Cross(place, along2) / turn;
    const double side2 = Cross(along1, place) / turn;
    DrawAngle(center, FarEnd(center, dimension_.first, dimension_.second, along1 * side1),
              FarEnd(center, dimension_.third, dimension_.line, along2 * side2), dimension_.arc);
  }

  // The end of the line from `a` to `b` that is farther from `center` in the direction `to`; if there is
  // none, a point there.
  static Vec2 FarEnd(Vec2 center, Vec2 a, Vec2 b, Vec2 to) {
    const Vec2 end = Dot(b - center, to) > Dot(a - center, to) ? b : a;
    return Dot(end - center, to) > 0 ? end : center + to;
  }

  void DrawRadius() {
    const Vec2 center = dimension_.line;
    const Vec2 tip = dimension_.third;
    if (center == tip) return;
    SetText(LengthText(Length(tip - center), "R", style_));
    DrawLeader(center, tip);
  }

  void DrawDiameter() {
    const Vec2 from = dimension_.line;
    const Vec2 tip = dimension_.third;
    if (from == tip) return;
    SetText(LengthText(Length(tip - from), "\u00d8", style_));
    AddArrow(from, Unit(from - tip), parts_.arrow1);
    DrawLeader(from, tip);
  }

  // A line with an arrowhead on a circle, towards the text if that is outside.
  void DrawLeader(Vec2 from, Vec2 tip) {
    const Vec2 along = Unit(tip - from);
    const double beyond = dimension_.textMiddle ? Dot(*dimension_.textMiddle - tip, along) : 0;
    if (beyond <= 0) {
      AddArrow(tip, along, parts_.arrow2);
      AddDimensionLine(from, tip);
      return;
    }
    AddArrow(tip, along * -1.0, parts_.arrow2);
    if (style_.hasInnerLine != 0) AddLine(from, tip, lineLook_);
    const double under = style_.textAbove != 0 ? TextWidth() / 2 : 0;
    AddDimensionLine(tip, tip + along * std::max(beyond + under, 2 * arrowSize_));
  }

  void DrawOrdinate() {
    const Vec2 axis = dimension_.isAlongX ? Vec2{0, 1} : Vec2{1, 0};
    const Vec2 measured = dimension_.first - dimension_.line;
    SetText(LengthText(std::abs(dimension_.isAlongX ? measured.x : measured.y), "", style_));
    const Vec2 way = dimension_.second - dimension_.first;
    const Vec2 along = axis * (Dot(way, axis) < 0 ? -1.0 : 1.0);
    const double length = Dot(way, along);
    const bool isStraight = std::abs(Cross(way, along)) <= kRoundingNoise * Length(way);
    const double knee = isStraight ? 0 : std::min(2 * arrowSize_, length / 2);
    const Vec2 start = dimension_.first + along * std::min(style_.extensionOffset * scale_, length);
    const Vec2 first = dimension_.first + along * (length - 2 * knee);
    const Vec2 second = dimension_.second - along * knee;
    AddLine(start, first, extensionLook_);
    AddLine(first, second, extensionLook_);
    const bool isAbove = style_.textAbove != 0;
    const Vec2 end = dimension_.second + along * (isAbove ? TextWidth() + 2 * gap_ : 0);
    AddLine(second, end, extensionLook_);
    const Vec2 right = Readable(along);
    const Vec2 above = TurnedLeft(right) * (isAbove ? gap_ + height_ / 2 : 0);
    AddText(dimension_.second + along * gap_ + above, right,
            Dot(right, along) > 0 ? kMiddleLeft : kMiddleRight);
  }

  static constexpr int kMiddleLeft = 4;
  static constexpr int kMiddleCenter = 5;
  static constexpr int kMiddleRight = 6;

  const Dimension& dimension_;
  const DimensionStyle& style_;
  const DimensionParts& parts_;
  double scale_;
  double arrowSize_;
  double gap_;
  double height_;
  Attributes lineLook_, extensionLook_, textLook_;
  std::string text_;
  Entities entities_;
};

}  // namespace

Entities DimensionEntities(const Dimension& dimension, const DimensionParts& parts) {
  return DimensionDrawing(dimension, parts).Draw();
}

}  // namespace hdiplot
