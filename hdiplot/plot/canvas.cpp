#include "hdiplot/plot/canvas.h"

#include <array>
#include <cassert>

#include "platform/unicode.h"

namespace hdiplot {

namespace {

// Annotation flags (ISO 32000-1:2008, 12.5.3): not printed, as its text is on the paper already; not hidden,
// which would exclude it from pop-ups and searches; not locked, so that a user can delete it.
constexpr uint32_t kCommentFlags = 0;

hdi::HT_Double_Point HostPoint(Vec2 p) { return {p.x, p.y}; }

std::vector<hdi::HT_Double_Point> HostRing(const Ring& ring) {
  std::vector<hdi::HT_Double_Point> points;
  points.reserve(ring.size());
  for (const Vec2& p : ring) points.push_back(HostPoint(p));
  return points;
}

Box BoxOf(const Sheet& sheet) { return {{0, 0}, {sheet.width, sheet.height}}; }

// Larger than all that shows on the sheet.
Box BoxAround(const Sheet& sheet) {
  return {{-sheet.width, -sheet.height}, {2 * sheet.width, 2 * sheet.height}};
}

// Of the outlines of glyphs: no more digits than a dot needs.
Vec2 OnPartOfDot(Vec2 p) {
  constexpr double kParts = 10;
  return {std::round(p.x * kParts) / kParts, std::round(p.y * kParts) / kParts};
}

// Whether a curve's control points are at one and two thirds of it.
bool IsStraight(std::span<const Vec2> curve) {
  constexpr double kOff = 1e-3;  // dots
  return Length(curve[1] - Between(curve[0], curve[3], 1.0 / 3)) <= kOff &&
         Length(curve[2] - Between(curve[0], curve[3], 2.0 / 3)) <= kOff;
}

}  // namespace

void Canvas::UseStroke(const Stroke& stroke) {
  if (stroke_ == stroke) return;
  SetPen(PenOf(stroke));
  stroke_ = stroke;
}

void Canvas::UseFill(Rgb color) {
  if (!pen_ || !(pen_->color == color) || !pen_->entries.empty()) {
    Pen pen;
    pen.color = color;
    SetPen(pen);
  }
  if (brush_ == color) return;
  device_.Make(call::SetBrush{color});
  brush_ = color;
}

Box Canvas::Visible() const { return clips_.empty() ? BoxOf(sheet_) : BoxOf(clips_.back()); }

// The part of the area within the box of the clip. Empty when that is not plottable.
Box Canvas::Seen(const Box& area) const {
  const Box seen = clips_.empty() ? area : Common(area, BoxOf(clips_.back()));
  return IsPlottable(seen.low) && IsPlottable(seen.high) ? seen : Box{};
}

void Canvas::SetPen(const Pen& pen) {
  stroke_.reset();
  if (pen_ == pen) return;
  device_.Make(call::SetPen{pen});
  pen_ = pen;
}

void Canvas::UseLayer(const std::u16string& name) {
  if (layer_ == name) return;
  device_.Make(call::SetLayer{name});
  layer_ = name;
}

void Canvas::UseAlpha(uint8_t alpha) {
  if (alpha_ == alpha) return;
  device_.Make(call::SetAlpha{alpha});
  alpha_ = alpha;
}

void Canvas::BeginLink(const std::string& target) { device_.Make(call::BeginLink{hdi::ToUtf16(target)}); }

// Fills the area with zero opacity to carry the link.
void Canvas::LinkArea(const std::string& target, const Box& area) {
  const Box seen = Seen(area);
  if (seen.Empty()) return;
  UseAlpha(0);
  UseFill({});
  BeginLink(target);
  BeginRing();
  for (const Vec2& p : CornersOf(seen)) RingPoint(p);
  FillRings(hdi::kFillWinding);
  EndLink();
}

void Canvas::Comment(const std::u16string& text, const Box& whole) {
  const Box area = Seen(whole);
  if (area.Empty()) return;
  const auto down = [](double dots) { return static_cast<int32_t>(std::floor(dots)); };
  const auto up = [](double dots) { return static_cast<int32_t>(std::ceil(dots)); };
  const std::array<int32_t, 4> rect{down(area.low.x), up(area.high.x), down(area.low.y), up(area.high.y)};
  device_.Make(call::ShxComment{text, rect, kCommentFlags});
}

void Canvas::Dot(Vec2 at) {
  if (!IsPlottable(at)) {
    NoteMissing();
    return;
  }
  const hdi::HT_Double_Point point = HostPoint(at);
  device_.Make(call::Polyline{Points(&point, 1)});
}

void Canvas::Line(Vec2 from, Vec2 to) {
  std::optional<Segment> line = Segment{from, to};
  if (!IsPlottable(from) || !IsPlottable(to)) {
    line = IsFinite(to - from) ? ClippedToSquare(*line, kFarthest) : std::nullopt;
  }
  if (!line) {
    NoteMissing();
    return;
  }
  const std::array<hdi::HT_Double_Point, 2> points{HostPoint(line->from), HostPoint(line->to)};
  device_.Make(call::Polyline{points});
}

void Canvas::Polyline(std::span<const Vec2> points) {
  if (!std::ranges::all_of(points, [](Vec2 p) { return IsPlottable(p); })) {
    for (size_t i = 1; i < points.size(); ++i) Line(points[i - 1], points[i]);
    if (points.size() == 1) NoteMissing();
    return;
  }
  points_.clear();
  for (const Vec2& p : points) points_.push_back(HostPoint(p));
  if (!points_.empty()) device_.Make(call::Polyline{points_});
}

void Canvas::Arc(const ConicArc& arc) {
  if (!IsPlottable(arc)) {
    NoteMissing();
    return;
  }
  const AxisArc axes = AxesOnPaper(arc);
  device_.Make(
      call::Arc{HostPoint(arc.center), axes.radiusA, axes.radiusB, axes.rotation, axes.start, axes.end});
}

void Canvas::BeginPath(Vec2 at) {
  points_.assign(1, HostPoint(at));
  pathPart_ = PathPart::kNone;
}

void Canvas::LineTo(Vec2 to) {
  if (pathPart_ == PathPart::kCurves) FlushPathPart();
  pathPart_ = PathPart::kLines;
  points_.push_back(HostPoint(to));
}

void Canvas::CurveTo(Vec2 control1, Vec2 control2, Vec2 to) {
  if (pathPart_ == PathPart::kLines) FlushPathPart();
  pathPart_ = PathPart::kCurves;
  for (const Vec2& p : {control1, control2, to}) points_.push_back(HostPoint(p));
}

void Canvas::EndPath() { FlushPathPart(); }

void Canvas::FlushPathPart() {
  assert(!points_.empty());
  if (pathPart_ == PathPart::kLines) device_.Make(call::Polyline{points_});
  if (pathPart_ == PathPart::kCurves) device_.Make(call::PolyBezier{points_});
  points_.assign(1, hdi::HT_Double_Point(points_.back()));
  pathPart_ = PathPart::kNone;
}

Vec2 Canvas::OnWholeDot(Vec2 p) const {
  if (!sheet_.wholeDots) return p;
  return {std::round(p.x), sheet_.mappedHeight - std::round(sheet_.mappedHeight - p.y)};
}

void Canvas::ClipToSheet() {
  clips_ = {{CornersOf(BoxOf(sheet_))}};
  SetClip(clips_.back());
}

Area Canvas::WithinClips(const Area& area) const {
  Area within = clips_.empty() ? area : Common(area, clips_.back());
  std::erase_if(within, [](const Ring& ring) { return ring.size() < 3; });
  return within;
}

bool Canvas::ClipTo(const Area& area) {
  const Area within = WithinClips(area);
  if (!within.empty()) SetClip(within);
  return !within.empty();
}

void Canvas::Unclip() { SetClip(clips_.empty() ? Area() : clips_.back()); }

bool Canvas::BeginView(const Area& area) {
  Area within = WithinClips(area);
  if (within.empty()) return false;
  clips_.push_back(std::move(within));
  Unclip();
  return true;
}

void Canvas::EndView() {
  clips_.pop_back();
  Unclip();
}

// The driver treats the first clip of a page as the page's bounds, and later ones as clips.
void Canvas::SetClip(const Area& area) {
  const std::vector<std::vector<hdi::HT_Double_Point>> page{HostRing(CornersOf(BoxOf(sheet_)))};
  if (!hasPageClip_) device_.Make(call::SetClip{page});
  hasPageClip_ = true;
  std::vector<std::vector<hdi::HT_Double_Point>> polygons;
  for (const Ring& ring : area) polygons.push_back(HostRing(ring));
  if (polygons.empty()) polygons.push_back(HostRing(CornersOf(BoxAround(sheet_))));
  device_.Make(call::SetClip{polygons});
}

void Canvas::BeginRing() {
  CloseRing();
  if (ringCount_ == rings_.size()) rings_.emplace_back();
  rings_[ringCount_++].clear();
}

void Canvas::RingPoint(Vec2 p) {
  if (IsPlottable(p)) {
    rings_[ringCount_ - 1].push_back(HostPoint(p));
  } else {
    NoteMissing();
  }
}

// Rings repeat their first point: the driver closes only the last subpath of an area.
void Canvas::CloseRing() {
  if (ringCount_ == 0) return;
  auto& ring = rings_[ringCount_ - 1];
  if (ring.size() < 2) {
    --ringCount_;
    return;
  }
  const hdi::HT_Double_Point first = ring.front();
  if (ring.back().x != first.x || ring.back().y != first.y) ring.push_back(first);
}

void Canvas::FillRings(uint32_t fillMode) {
  CloseRing();
  if (ringCount_ > 0) {
    UseFillMode(fillMode);
    device_.Make(call::PolyPolygon{{rings_.data(), ringCount_}});
  }
  ringCount_ = 0;
}

void Canvas::UseFillMode(uint32_t mode) {
  if (fillMode_ != mode) device_.Make(call::SetFillMode{mode});
  fillMode_ = mode;
}

void Canvas::BeginArea() {
  UseFillMode(hdi::kFillWinding);
  device_.Make(call::BeginPath{});
}

void Canvas::AreaCurve(std::span<const Vec2> points) {
  const size_t sides = points.size() / 3;
  const auto isStraight = [&](size_t side) { return IsStraight(points.subspan(side * 3, 4)); };
  const auto end = [&](size_t side) {
    const bool meetsLine = isStraight(side % sides) || isStraight((side + sides - 1) % sides);
    const Vec2 p = points[side % sides * 3];
    return meetsLine ? OnWholeDot(p) : OnPartOfDot(p);
  };
  if (sides == 0) return;
  BeginPath(end(0));
  for (size_t i = 0; i < sides; ++i) {
    const Vec2* curve = &points[i * 3];
    if (isStraight(i)) {
      LineTo(end(i + 1));
    } else {
      CurveTo(OnPartOfDot(curve[1]), OnPartOfDot(curve[2]), end(i + 1));
    }
  }
  EndPath();
}

void Canvas::FillArea() {
  device_.Make(call::EndPath{});
  device_.Make(call::FillPath{});
}

bool Canvas::Text(const DeviceText& text) {
  const call::Text made{text.font,   HostPoint(text.at), text.text,           text.advances,
                        text.height, text.oblique,       text.trackingFactor, text.widthFactor};
  return device_.Make(made) != 0;
}

}  // namespace hdiplot
