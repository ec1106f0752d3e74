#include "hdiplot/geometry/curves.h"

namespace hdiplot {

namespace {

// A span within this of whole turns is a whole turn. Ends just above a whole turn are often 2 pi written with
// few digits.
constexpr double kNoTurn = 1e-9;
constexpr double kRoundedTurn = 1e-5;

// Bounds the work on a single curve, whatever its size.
constexpr double kMostPieces = 20000;

size_t PieceCount(double wanted) {
  return wanted > 1 ? static_cast<size_t>(std::min(wanted, kMostPieces)) : 1;  // not a number: 1
}

// Adds the points of the arc at t, t + pi, t + 2 pi and so on, as far as they lie on it.
void AddExtremes(const ConicArc& arc, double t, Box& box) {
  const double low = std::min(arc.start, arc.end);
  const double high = std::max(arc.start, arc.end);
  double angle = t + std::ceil((low - t) / std::numbers::pi) * std::numbers::pi;
  for (int i = 0; i < 2 && angle <= high; ++i, angle += std::numbers::pi) box.Add(arc.At(angle));
}

// Calls `use` with the zeros in (0, 1) of a cubic curve's derivative along one axis, given its four values
// there.
template <typename Use>
void ForEachExtreme(double p0, double p1, double p2, double p3, Use use) {
  const double a = p3 - 3 * p2 + 3 * p1 - p0;
  const double b = 2 * (p2 - 2 * p1 + p0);
  const double c = p1 - p0;
  const auto offer = [&](double t) {
    if (t > 0 && t < 1) use(t);
  };
  const double discriminant = b * b - 4 * a * c;
  if (discriminant < 0) return;
  // The form without cancellation.
  const double q = -(b + std::copysign(std::sqrt(discriminant), b)) / 2;
  if (a != 0) offer(q / a);
  if (q != 0) offer(c / q);
}

}  // namespace

Sweep NormalizedSweep(double start, double end) {
  const double span = end - start;
  double rest = std::fmod(span, kWholeTurn);
  if (rest < 0) rest += kWholeTurn;
  if (rest < kNoTurn || (span > kWholeTurn && rest < kRoundedTurn)) rest = kWholeTurn;
  if (std::fabs(start) >= 2 * kWholeTurn) start = std::fmod(start, kWholeTurn);
  return {start, start + rest};
}

ConicArc CircularArc(Vec2 center, double radius, Sweep sweep) {
  return {center, {radius, 0}, {0, radius}, sweep.start, sweep.end};
}

std::optional<ConicArc> BulgeArc(Vec2 from, Vec2 to, double bulge) {
  const Vec2 chord = to - from;
  // A bulge is twice the arc's height over its chord: below a millionth it shows at no resolution.
  if (!(std::abs(bulge) > 1e-6) || !std::isfinite(bulge) || (chord.x == 0 && chord.y == 0)) {
    return std::nullopt;
  }
  const double toCenter = (1 - bulge * bulge) / (4 * bulge);
  const Vec2 center = Between(from, to, 0.5) + TurnedLeft(chord) * toCenter;
  const Vec2 u = from - center;
  return ConicArc{center, u, TurnedLeft(u), 0, 4 * std::atan(bulge)};
}

ConicArc OnPrincipalAxes(const ConicArc& arc) {
  const double product = Dot(arc.u, arc.v);
  const double difference = Dot(arc.u, arc.u) - Dot(arc.v, arc.v);
  // The parameter of the longest diameter.
  const double turn = std::abs(product) <= kRoundingNoise * std::hypot(product, difference) && difference >= 0
                          ? 0.0
                          : 0.5 * std::atan2(2 * product, difference);
  return {arc.center, arc.u * std::cos(turn) + arc.v * std::sin(turn),
          arc.u * -std::sin(turn) + arc.v * std::cos(turn), arc.start - turn, arc.end - turn};
}

ConicArc Transformed(const ConicArc& arc, const Affine& map) {
  return {map(arc.center), map.Direction(arc.u), map.Direction(arc.v), arc.start, arc.end};
}

void AddToBox(const ConicArc& arc, Box& box) {
  box.Add(arc.At(arc.start));
  box.Add(arc.At(arc.end));
  AddExtremes(arc, std::atan2(arc.v.x, arc.u.x), box);
  AddExtremes(arc, std::atan2(arc.v.y, arc.u.y), box);
}

AxisArc AxesOnPaper(const ConicArc& arc) {
  // The matrix of u and v, turned to Y up, as R(rotation) diag(radiusA, radiusB) R(shift): its singular
  // value decomposition in closed form.
  const Vec2 u{arc.u.x, -arc.u.y};
  const Vec2 v{arc.v.x, -arc.v.y};
  const double e = (u.x + v.y) / 2;
  const double f = (u.x - v.y) / 2;
  const double g = (u.y + v.x) / 2;
  const double h = (u.y - v.x) / 2;
  const double sum = std::hypot(e, h);
  const double difference = std::hypot(f, g);
  // For a circle the axes would be rounding errors.
  const double first = difference > 1e-12 * sum ? std::atan2(g, f) : 0;
  const double second = sum > 1e-12 * difference ? std::atan2(h, e) : 0;
  const double shift = (second - first) / 2;

  AxisArc axes;
  axes.radiusA = sum + difference;
  axes.radiusB = std::abs(sum - difference);
  axes.rotation = (second + first) / 2;
  axes.start = arc.start + shift;
  axes.end = arc.end + shift;
  if (sum < difference) {  // mirrored: the parameter runs backwards
    axes.start = -axes.start;
    axes.end = -axes.end;
  }
  if (axes.end < axes.start) std::swap(axes.start, axes.end);
  return axes;
}

void AppendCubics(const ConicArc& arc, double tolerance, std::vector<Cubic>& cubics) {
  if (arc.Span() == 0) return;
  // A cubic over the angle s deviates from a circle of radius r by 2/27 r sin^6(s/4) / cos^2(s/4); up to a
  // quarter turn (s/4)^6 is a close upper bound.
  const double widest = std::min(std::numbers::pi / 2, 4 * std::pow(tolerance * 13.5 / arc.Reach(), 1.0 / 6));
  const size_t count = PieceCount(std::ceil(std::abs(arc.Span()) / widest - 1e-9));
  const double step = arc.Span() / static_cast<double>(count);
  const double handle = 4.0 / 3.0 * std::tan(step / 4);
  Vec2 from = arc.At(arc.start);
  Vec2 tangent = arc.DerivativeAt(arc.start);
  for (size_t i = 1; i <= count; ++i) {
    const double t = i == count ? arc.end : arc.start + step * static_cast<double>(i);
    const Vec2 to = arc.At(t);
    const Vec2 nextTangent = arc.DerivativeAt(t);
    cubics.push_back({{from, from + tangent * handle, to - nextTangent * handle, to}});
    from = to;
    tangent = nextTangent;
  }
}

void AddToBox(const Cubic& cubic, Box& box) {
  const auto& p = cubic.points;
  box.Add(p[0]);
  box.Add(p[3]);
  const auto add = [&](double t) { box.Add(cubic.At(t)); };
  ForEachExtreme(p[0].x, p[1].x, p[2].x, p[3].x, add);
  ForEachExtreme(p[0].y, p[1].y, p[2].y, p[3].y, add);
}

void AppendFlattened(const ConicArc& arc, double tolerance, std::vector<Vec2>& points) {
  // A chord over the angle s deviates from the circle of radius r by r (1 - cos(s/2)), about r s^2 / 8.
  const double step = std::min(std::numbers::pi / 4, std::sqrt(8 * tolerance / arc.Reach()));
  const size_t count = PieceCount(std::ceil(std::abs(arc.Span()) / step - 1e-9));
  for (size_t i = 1; i <= count; ++i) {
    points.push_back(arc.At(arc.start + arc.Span() * (static_cast<double>(i) / static_cast<double>(count))));
  }
}

void AppendFlattened(const Cubic& cubic, double tolerance, std::vector<Vec2>& points) {
  // The second derivative is at most six times the larger second difference of the control points, and a
  // chord over a parameter step h deviates from the curve by at most h^2 / 8 of it.
  const auto& p = cubic.points;
  const double bend = std::max(Length(p[0] - p[1] * 2 + p[2]), Length(p[1] - p[2] * 2 + p[3]));
  const size_t count = PieceCount(std::ceil(std::sqrt(0.75 * bend / tolerance)));
  for (size_t i = 1; i < count; ++i) {
    points.push_back(cubic.At(static_cast<double>(i) / static_cast<double>(count)));
  }
  points.push_back(p[3]);
}

}  // namespace hdiplot
