#include "hdiplot/geometry/splines.h"

namespace hdiplot {

namespace {

constexpr int kHighestDegree = 25;
constexpr int kDeepestHalving = 10;

struct Weighted {  // a point of the projective plane: (x w, y w, w)
  Vec2 point;
  double weight = 1;
};

Weighted Mixed(const Weighted& a, const Weighted& b, double part) {
  return {Between(a.point, b.point, part), a.weight + (b.weight - a.weight) * part};
}

struct PointAndDerivative {
  Vec2 point;
  Vec2 derivative;
};

class BSpline {
 public:
  explicit BSpline(const Spline& spline)
      : spline_(spline), rational_(spline.weights.size() == spline.controlPoints.size()) {}

  [[nodiscard]] bool Sound() const {
    const size_t degree = static_cast<size_t>(spline_.degree);
    return spline_.degree >= 1 && spline_.degree <= kHighestDegree && spline_.controlPoints.size() > degree &&
           spline_.knots.size() == spline_.controlPoints.size() + degree + 1;
  }

  // Whether each polynomial piece is a cubic.
  [[nodiscard]] bool IsPlainCubic() const { return !rational_ && spline_.degree <= 3; }

  // The polynomial piece between knots `span` and `span` + 1, by de Boor's algorithm. At a knot it is the
  // limit from within the piece, which preserves corners of the spline.
  [[nodiscard]] PointAndDerivative At(size_t span, double t) const {
    const size_t degree = static_cast<size_t>(spline_.degree);
    std::array<Weighted, kHighestDegree + 1> d;
    for (size_t i = 0; i <= degree; ++i) d[i] = ControlPoint(span - degree + i);
    for (size_t level = 1; level < degree; ++level) {
      for (size_t i = degree; i >= level; --i) {
        d[i] = Mixed(d[i - 1], d[i], Part(span - degree + i, degree + 1 - level, t));
      }
    }
    const double width = spline_.knots[span + 1] - spline_.knots[span];
    const Weighted& low = d[degree - 1];
    const Weighted& high = d[degree];
    const Weighted at = Mixed(low, high, (t - spline_.knots[span]) / width);
    const double factor = static_cast<double>(degree) / width;
    const Weighted derivative{(high.point - low.point) * factor, (high.weight - low.weight) * factor};
    const Vec2 point = at.point * (1 / at.weight);
    return {point, (derivative.point - point * derivative.weight) * (1 / at.weight)};
  }

 private:
  [[nodiscard]] Weighted ControlPoint(size_t index) const {
    const double weight = rational_ ? spline_.weights[index] : 1;
    return {spline_.controlPoints[index] * weight, weight};
  }

  [[nodiscard]] double Part(size_t knot, size_t width, double t) const {
    const double low = spline_.knots[knot];
    const double high = spline_.knots[knot + width];
    return high > low ? (t - low) / (high - low) : 0;
  }

  const Spline& spline_;
  bool rational_;
};

// The cubic with the ends and the end derivatives of a piece of the parameter's `width`.
Cubic HermiteCubic(const PointAndDerivative& from, const PointAndDerivative& to, double width) {
  return {{from.point, from.point + from.derivative * (width / 3), to.point - to.derivative * (width / 3),
           to.point}};
}

struct Piece {
  size_t span;
  double from;
  double to;
};

void AppendPiece(const BSpline& spline, const Piece& piece, double tolerance, int depth,
                 std::vector<Cubic>& cubics) {
  const double width = piece.to - piece.from;
  const Cubic cubic = HermiteCubic(spline.At(piece.span, piece.from), spline.At(piece.span, piece.to), width);
  bool near = true;
  if (!spline.IsPlainCubic() && depth < kDeepestHalving) {
    for (const double part : {0.25, 0.5, 0.75}) {
      const Vec2 wanted = spline.At(piece.span, piece.from + width * part).point;
      near = near && Length(cubic.At(part) - wanted) <= tolerance;
    }
  }
  if (near) {
    cubics.push_back(cubic);
    return;
  }
  const double middle = piece.from + width / 2;
  AppendPiece(spline, {piece.span, piece.from, middle}, tolerance, depth + 1, cubics);
  AppendPiece(spline, {piece.span, middle, piece.to}, tolerance, depth + 1, cubics);
}

void AppendPolygon(const std::vector<Vec2>& points, std::vector<Cubic>& cubics) {
  for (size_t i = 1; i < points.size(); ++i) {
    const Vec2 a = points[i - 1];
    const Vec2 b = points[i];
    cubics.push_back({{a, Between(a, b, 1.0 / 3), Between(a, b, 2.0 / 3), b}});
  }
}

// The derivatives at `points` of the natural cubic spline through them, over the parameters `t`: the
// tridiagonal system of continuous second derivatives.
std::vector<Vec2> NaturalDerivatives(const std::vector<Vec2>& points, const std::vector<double>& t) {
  const size_t n = points.size();
  std::vector<double> upper(n);
  std::vector<Vec2> derivative(n);
  for (size_t i = 0; i < n; ++i) {
    const double before = i > 0 ? 1 / (t[i] - t[i - 1]) : 0;
    const double behind = i + 1 < n ? 1 / (t[i + 1] - t[i]) : 0;
    Vec2 right;
    if (i > 0) right = right + (points[i] - points[i - 1]) * (3 * before * before);
    if (i + 1 < n) right = right + (points[i + 1] - points[i]) * (3 * behind * behind);
    const double pivot = 2 * (before + behind) - (i > 0 ? before * upper[i - 1] : 0);
    upper[i] = behind / pivot;
    derivative[i] = (right - (i > 0 ? derivative[i - 1] * before : Vec2{})) * (1 / pivot);
  }
  for (size_t i = n - 1; i-- > 0;) derivative[i] = derivative[i] - derivative[i + 1] * upper[i];
  return derivative;
}

void AppendFitCurve(const Spline& spline, std::vector<Cubic>& cubics) {
  std::vector<Vec2> points;
  for (const Vec2& p : spline.fitPoints) {
    if (points.empty() || !(p == points.back())) points.push_back(p);
  }
  if (spline.closed && points.size() > 1 && points.front() == points.back()) points.pop_back();
  if (points.size() < 2) return;
  // A closed curve is computed as part of an open one that continues around the ring at both ends; the
  // influence of the far ends drops to a quarter with every point.
  const size_t ring = points.size();
  const size_t lead = spline.closed && ring > 2 ? 12 : 0;
  if (lead > 0) {
    std::vector<Vec2> extended;
    for (size_t i = 0; i < ring + 2 * lead + 1; ++i) {
      extended.push_back(points[(i + ring * lead - lead) % ring]);
    }
    points = std::move(extended);
  }
  std::vector<double> t{0};
  for (size_t i = 1; i < points.size(); ++i) t.push_back(t.back() + Length(points[i] - points[i - 1]));
  const std::vector<Vec2> derivative = NaturalDerivatives(points, t);
  for (size_t i = lead + 1; i < points.size() - lead; ++i) {
    cubics.push_back(
        HermiteCubic({points[i - 1], derivative[i - 1]}, {points[i], derivative[i]}, t[i] - t[i - 1]));
  }
}

}  // namespace

void AppendCubics(const Spline& spline, double tolerance, std::vector<Cubic>& cubics) {
  if (spline.controlPoints.empty()) {
    AppendFitCurve(spline, cubics);
    return;
  }
  const BSpline curve(spline);
  if (!curve.Sound()) {
    AppendPolygon(spline.controlPoints, cubics);
    return;
  }
  const size_t degree = static_cast<size_t>(spline.degree);
  for (size_t span = degree; span < spline.controlPoints.size(); ++span) {
    const double from = spline.knots[span];
    const double to = spline.knots[span + 1];
    if (to > from) AppendPiece(curve, {span, from, to}, tolerance, 0, cubics);
  }
}

}  // namespace hdiplot
