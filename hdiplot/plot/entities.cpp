#include "hdiplot/plot/entities.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "hdiplot/geometry/splines.h"
#include "hdiplot/plot/gradient.h"
#include "hdiplot/plot/hatch_pattern.h"
#include "hdiplot/plot/polyline.h"
#include "hdiplot/plot/walk.h"

namespace hdiplot {

namespace {

constexpr double kSplineTolerance = 0.05;    // dots
constexpr double kBoundaryTolerance = 0.25;  // dots
constexpr double kNarrowestBand = 0.35;      // millimetres; a pixel at 72 per inch

}  // namespace

void EntityPlotter::Plot(const Shape& shape, const Affine& map, const Style& style) {
  map_ = map;
  style_ = &style;
  std::visit([this](const auto& form) { Draw(form); }, shape);
}

Stroke EntityPlotter::StrokeOf(const Style& style) const {
  const double dotsPerMillimetre = canvas_.GetSheet().dotsPerMillimetre;
  const auto width = [&](int weight) {
    return PenWidth(weight / 100.0 * scale_.lineWeightFactor * dotsPerMillimetre);
  };
  Stroke stroke{style.color, width(style.lineWeight), LineEnds::kRound, style.lineType,
                style.lineTypeScale * scale_.dotsPerLineTypeUnit};
  if (const PlotStyle* plot = style.plotStyle) {
    if (plot->lineWeight) stroke.width = width(*plot->lineWeight);
    if (plot->lineType) {
      stroke.lineType = &*plot->lineType;
      stroke.lineTypeScale = dotsPerMillimetre;
    }
    stroke.ends.caps = plot->ends.value_or(stroke.ends.caps);
    stroke.ends.joins = plot->joins.value_or(stroke.ends.joins);
  }
  return stroke;
}

// A path with signs has its pattern from its start: it does not continue another one.
void EntityPlotter::UseStyle() {
  const Stroke stroke = StrokeOf(*style_);
  canvas_.UseStroke(stroke);
  if (LineTypeSigns::AreIn(stroke)) canvas_.SeparatePath();
}

void EntityPlotter::Draw(const LineEntity& line) {
  UseStyle();
  canvas_.Line(map_(line.start), map_(line.end));
  DrawSigns(line);
}

void EntityPlotter::Draw(const PolylineEntity& polyline) {
  const Stroke stroke = StrokeOf(*style_);
  if (LineTypeSigns::AreIn(stroke)) canvas_.SeparatePath();
  polylines_.Plot(polyline, map_, stroke);
  DrawSigns(polyline);
}

void EntityPlotter::DrawSigns(const LineEntity& line) {
  const Stroke stroke = StrokeOf(*style_);
  if (!LineTypeSigns::AreIn(stroke)) return;
  signs_.Draw(std::array{map_(line.start), map_(line.end)}, stroke, *style_);
}

void EntityPlotter::DrawSigns(const PolylineEntity& polyline) {
  const Stroke stroke = StrokeOf(*style_);
  if (!LineTypeSigns::AreIn(stroke)) return;
  std::vector<Vec2> points;
  for (size_t i = 0; i < SegmentCount(polyline); ++i) {
    const PolySegment segment = SegmentOf(polyline, i);
    if (!polyline.continuousPattern) points.clear();
    if (points.empty()) points.push_back(map_(segment.from));
    if (segment.arc) AppendFlat(*segment.arc, points);
    points.push_back(map_(segment.to));
    if (!polyline.continuousPattern) signs_.Draw(points, stroke, *style_);
  }
  if (polyline.continuousPattern) signs_.Draw(points, stroke, *style_);
}

void EntityPlotter::DrawSigns(const ConicArc& arc) {
  const Stroke stroke = StrokeOf(*style_);
  if (!LineTypeSigns::AreIn(stroke)) return;
  std::vector<Vec2> points;
  AppendFlat(arc, points);
  signs_.Draw(points, stroke, *style_);
}

// Chords of about two degrees, to place signs along an arc.
void EntityPlotter::AppendFlat(const ConicArc& arc, std::vector<Vec2>& points) const {
  const int pieces = 2 + static_cast<int>(std::abs(arc.Span()) / kWholeTurn * 180);
  for (int i = 0; i <= pieces; ++i) points.push_back(map_(arc.At(arc.start + arc.Span() * i / pieces)));
}

void EntityPlotter::Draw(const MeshEntity& mesh) {
  UseStyle();
  for (const auto& edge : mesh.edges) {
    points_.clear();
    for (const Vec2& p : edge) points_.push_back(map_(p));
    canvas_.Polyline(points_);
  }
}

void EntityPlotter::Draw(const ArcEntity& arc) {
  UseStyle();
  canvas_.Arc(Transformed(ConicOf(arc), map_));
  DrawSigns(ConicOf(arc));
}

void EntityPlotter::Draw(const EllipseEntity& ellipse) {
  UseStyle();
  canvas_.Arc(Transformed(ellipse, map_));
  DrawSigns(ellipse);
}

void EntityPlotter::Draw(const SplineEntity& spline) {
  cubics_.clear();
  AppendCubics(spline, kSplineTolerance / map_.LargestScale(), cubics_);
  for (Cubic& cubic : cubics_) {
    for (Vec2& p : cubic.points) {
      p = map_(p);
      if (!Canvas::IsPlottable(p)) {
        canvas_.NoteMissing();
        return;
      }
    }
  }
  UseStyle();
  for (size_t i = 0; i < cubics_.size(); ++i) {
    const auto& p = cubics_[i].points;
    // A knot of full multiplicity interrupts the spline.
    const bool goesOn = i > 0 && Length(p[0] - cubics_[i - 1].points[3]) <= kSplineTolerance;
    if (i > 0 && !goesOn) canvas_.EndPath();
    if (!goesOn) canvas_.BeginPath(p[0]);
    canvas_.CurveTo(p[1], p[2], p[3]);
  }
  if (!cubics_.empty()) canvas_.EndPath();
}

void EntityPlotter::Draw(const PointEntity& point) {
  UseStyle();
  DrawPointFigure(map_(point.point));
}

void EntityPlotter::Draw(const RayEntity& ray) {
  const auto seen = ClippedRay(map_(ray.base), map_.Direction(ray.direction), ray.isWhole, canvas_.Visible());
  if (!seen) return;
  UseStyle();
  canvas_.Line(seen->from, seen->to);
}

// The low bits of the mode are a figure, two higher ones a circle and a square around it.
void EntityPlotter::DrawPointFigure(Vec2 at) {
  constexpr int kFigure = 0xF;
  constexpr int kCircle = 0x20;
  constexpr int kSquare = 0x40;
  const double size = scale_.pointSize;
  const double half = size / 2;
  const auto through = [&](Vec2 arm) { canvas_.Line(at - arm, at + arm); };
  switch (scale_.pointMode & kFigure) {
    case 1:
      break;
    case 2:
      through({size, 0});
      through({0, size});
      break;
    case 3:
      through({size, size});
      through({size, -size});
      break;
    case 4:
      canvas_.Line(at, at + Vec2{0, -half});
      break;
    default:
      canvas_.Dot(at);
  }
  if (scale_.pointMode & kCircle) canvas_.Arc(CircularArc(at, half, {0, kWholeTurn}));
  if (scale_.pointMode & kSquare) {
    const Vec2 corner{half, half};
    const Vec2 other{half, -half};
    points_ = {at - corner, at + other, at + corner, at - other, at - corner};
    canvas_.Polyline(points_);
  }
}

void EntityPlotter::Draw(const SolidEntity& solid) {
  canvas_.UseFill(style_->color);
  canvas_.BeginRing();
  for (const Vec2& p : solid.corners) canvas_.RingPoint(map_(p));
  canvas_.FillRings(hdi::kFillAlternate);
}

void EntityPlotter::Draw(const FaceEntity& face) {
  UseStyle();
  const size_t count = face.corners.size();
  for (size_t i = 0; i < std::min(count, face.edgeVisible.size()); ++i) {
    if (face.edgeVisible[i]) canvas_.Line(map_(face.corners[i]), map_(face.corners[(i + 1) % count]));
  }
}

// The border of a rectangular viewport. Any other outline is an entity of its own.
void EntityPlotter::Draw(const ViewportEntity& viewport) {
  if (!viewport.clip.empty()) return;
  UseStyle();
  Ring frame = Mapped(FrameOf(viewport), map_);
  frame.push_back(frame.front());
  canvas_.Polyline(frame);
}

void EntityPlotter::Draw(const TextEntity& text) { DrawText(texts_.Set(text)); }

void EntityPlotter::Draw(const MTextEntity& text) { DrawText(texts_.Set(text)); }

void EntityPlotter::Draw(const ToleranceEntity& tolerance) { DrawText(texts_.Set(tolerance)); }

void EntityPlotter::DrawText(const TextBlock& block) {
  if (block.panel) DrawPanel(*block.panel, map_ * block.frame);
  textPlotter_.Plot(block, map_, *style_, StrokeOf(*style_).width);
}

// A mask of a monochrome plot is grey, or the text on it would not show.
void EntityPlotter::DrawPanel(const TextPanel& panel, const Affine& map) {
  points_.clear();
  for (const Vec2 corner : CornersOf(panel.area)) points_.push_back(map(corner));
  if (panel.look.masked) {
    const auto& fill = panel.look.fill;
    canvas_.UseFill(fill ? style_->ink->ShadeOf(style_->Resolved(*fill)) : scale_.paper);
    canvas_.BeginRing();
    for (const Vec2& p : points_) canvas_.RingPoint(p);
    canvas_.FillRings(hdi::kFillAlternate);
  }
  if (!panel.look.framed) return;
  UseStyle();
  points_.push_back(points_.front());
  canvas_.Polyline(points_);
}

void EntityPlotter::Draw(const HatchEntity& hatch) {
  const double tolerance = kBoundaryTolerance / map_.LargestScale();
  const std::vector<Ring> rings = BoundaryRings(hatch, tolerance);
  if (rings.empty()) return;
  if (hatch.gradient) {
    FillGradient(*hatch.gradient, rings, tolerance);
  } else if (hatch.solid && style_->plotStyle != nullptr && !style_->plotStyle->fill.empty()) {
    DrawPlotFill(rings);
  } else if (hatch.solid) {
    FillHatch(rings, style_->color);
  } else {
    DrawPattern(hatch, rings);
  }
}

void EntityPlotter::FillGradient(const HatchGradient& gradient, const std::vector<Ring>& rings,
                                 double tolerance) {
  const std::vector<Rgb> colors = BandColors(gradient, *style_, MostBands(rings));
  const std::vector<Ring> outlines = NestedOutlines(gradient, rings, colors.size(), tolerance);
  if (outlines.size() > 1) {
    FillBands(canvas_, {colors, outlines, IsOpaque()}, rings, map_);
  } else {
    FillHatch(rings, colors.front());
  }
}

// Readers widen narrow bands to a pixel, so that transparent ones overlap and darken.
size_t EntityPlotter::MostBands(const std::vector<Ring>& rings) const {
  if (IsOpaque()) return std::numeric_limits<size_t>::max();
  Box box;
  for (const Ring& ring : rings) {
    for (const Vec2& p : ring) box.Add(map_(p));
  }
  const double way = std::max(box.Width(), box.Height()) / 2;  // of gradients from the middle outwards
  const double narrowest = kNarrowestBand * canvas_.GetSheet().dotsPerMillimetre;
  return static_cast<size_t>(std::fmax(std::fmin(way / narrowest, 1000), 2));
}

void EntityPlotter::FillHatch(const std::vector<Ring>& rings, Rgb color) {
  canvas_.UseFill(color);
  for (const Ring& ring : rings) {
    canvas_.BeginRing();
    for (const Vec2& p : ring) canvas_.RingPoint(map_(p));
  }
  canvas_.FillRings(hdi::kFillAlternate);
}

// In the pattern of the plot style.
void EntityPlotter::DrawPlotFill(const std::vector<Ring>& rings) {
  const double unit = canvas_.GetSheet().dotsPerMillimetre / map_.LargestScale();
  HatchEntity hatch;
  hatch.lines = style_->plotStyle->fill;
  for (HatchPatternLine& line : hatch.lines) {
    line.offset = line.offset * unit;
    for (double& dash : line.dashes) dash *= unit;
  }
  DrawPattern(hatch, rings);
}

void EntityPlotter::DrawPattern(const HatchEntity& hatch, const std::vector<Ring>& rings) {
  Stroke stroke = StrokeOf(*style_);
  stroke.lineType = nullptr;
  canvas_.UseStroke(stroke);
  // Lines half a pen's width apart, or dashes of that length, cover the paper completely.
  const double unit = 1 / map_.LargestScale();
  PatternLimits limits;
  limits.closestLines = std::max(1.0, stroke.width / 2.0) * unit;
  limits.shortestPattern = std::max(2.0, stroke.width / 2.0) * unit;
  PatternCutter cutter(rings, limits);
  for (const HatchPatternLine& family : hatch.lines) {
    for (const PatternPiece& piece : cutter.Cut(family)) {
      if (piece.from == piece.to) {
        canvas_.Dot(map_(piece.from));
      } else {
        canvas_.Line(map_(piece.from), map_(piece.to));
      }
    }
  }
}

}  // namespace hdiplot
