// Converts TrueType's quadratic curves, with their implied on-curve points, to cubic curves.
#include "platform/windows/font_face_outline.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <span>
#include <utility>

#include "platform/glyph_contours.h"

namespace hdi {
namespace {

class ContourMaker {
 public:
  explicit ContourMaker(const GlyphPoint& start) : contour_{start} {}

  void AddOnCurve(const GlyphPoint& point) {
    if (control_) {
      AddQuadratic(contour_, *std::exchange(control_, std::nullopt), point);
    } else {
      AddLine(contour_, point);
    }
  }

  void AddControl(const GlyphPoint& point) {
    if (control_) AddQuadratic(contour_, *control_, Between(*control_, point, 0.5));
    control_ = point;
  }

  GlyphContour Close() {
    AddOnCurve(GlyphPoint(contour_.front()));
    return std::move(contour_);
  }

 private:
  GlyphContour contour_;
  std::optional<GlyphPoint> control_;  // waiting for the end of its curve
};

// A contour that starts with a control point starts at its last point, or halfway to it.
GlyphContour MakeContour(std::span<const OutlinePoint> points, double scale, double origin) {
  const auto placed = [&](const OutlinePoint& point) {
    return GlyphPoint{(point.x - origin) * scale, point.y * scale};
  };
  GlyphPoint start = placed(points.front());
  if (points.front().isOnCurve) {
    points = points.subspan(1);
  } else if (points.back().isOnCurve) {
    start = placed(points.back());
    points = points.first(points.size() - 1);
  } else {
    start = Between(start, placed(points.back()), 0.5);
  }
  ContourMaker maker(start);
  for (const OutlinePoint& point : points) {
    point.isOnCurve ? maker.AddOnCurve(placed(point)) : maker.AddControl(placed(point));
  }
  return maker.Close();
}

double At(double a, double b, double c, double d, double t) {
  const double s = 1 - t;
  return s * s * s * a + 3 * s * s * t * b + 3 * s * t * t * c + t * t * t * d;
}

void Include(VerticalExtent& extent, double y) {
  extent.lowest = std::min(extent.lowest, y);
  extent.highest = std::max(extent.highest, y);
}

// Extrema are where the derivative, p t^2 - 2 q t + r, is 0.
void IncludeCurve(VerticalExtent& extent, double a, double b, double c, double d) {
  Include(extent, d);
  const double r = b - a;
  const double q = 2 * b - a - c;
  const double p = d - a + 3 * (b - c);
  const double root = std::sqrt(q * q - p * r);
  // Both quotients are needed: for a nearly quadratic curve p is close to 0, and the usual formula divides by
  // it.
  const double sum = q + std::copysign(root, q);
  for (const double t : {sum / p, r / sum}) {
    if (t > 0 && t < 1) Include(extent, At(a, b, c, d, t));
  }
}

}  // namespace

std::vector<GlyphContour> MakeContours(const GlyphData& glyph, double scale) {
  std::vector<GlyphContour> contours;
  size_t start = 0;
  for (const size_t end : glyph.ends) {
    // Single-point contours only serve as anchors.
    if (end > start + 1) {
      const auto points = std::span(glyph.points).subspan(start, end - start);
      contours.push_back(MakeContour(points, scale, glyph.origin));
    }
    start = end;
  }
  RemoveAnchors(contours);
  return contours;
}

VerticalExtent ExtentOf(const std::vector<GlyphContour>& contours) {
  VerticalExtent extent;
  for (const GlyphContour& contour : contours) {
    for (size_t i = 0; i + 3 < contour.size(); i += 3) {
      IncludeCurve(extent, contour[i].y, contour[i + 1].y, contour[i + 2].y, contour[i + 3].y);
    }
  }
  return extent;
}

}  // namespace hdi
