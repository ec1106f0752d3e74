// Elliptic arcs and their approximation by cubic curves.
//
// Number of curves: a piece of span h of the unit circle is drawn as the cubic whose end points lie on the
// circle, whose end tangents are the circle's, and whose control points are at distance k = 4/3 tan(h/4)
// along them. Such a curve touches the circle at both ends and in the middle and lies outside it in between.
// With s = sin(h/4) and c = cos(h/4), the square of its distance from the centre is at most 1 + 4/27 s^6 /
// c^2; since sqrt(1 + e) <= 1 + e/2, the curve deviates from the circle by at most
//
//     d(h) = 2/27 sin^6(h/4) / cos^2(h/4),
//
// which grows with the sixth power of h and is 2.73e-4 for a quarter turn. An ellipse is a linear image of
// the unit circle, and the map stretches no length by more than the larger radius R. So the curves stay
// within R d(h) of the arc.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "platform/host_library.h"

namespace hdi {
namespace {

constexpr double kMaxDeviation = 1.0 / 20.0;  // dots
constexpr double kTurn = 2.0 * std::numbers::pi;
constexpr double kQuarterTurn = std::numbers::pi / 2.0;

// A span that is less than this below a full turn counts as one: at 100,000 dots the gap would be 1e-5 dots,
// below which the driver treats two points as the same. Ends of a full turn are rarely passed exactly.
constexpr double kTurnSlack = 1e-10;

// Enough for radii beyond 1e15 dots, where f64 itself is coarser than the deviation.
constexpr int32_t kMaxPieces = 1024;

double Deviation(double radius, double piece) {
  const double sine = std::sin(piece / 4.0);
  const double cosine = std::cos(piece / 4.0);
  return radius * 2.0 / 27.0 * std::pow(sine, 6) / (cosine * cosine);
}

// Returns the smallest number of pieces that keeps `span` within the deviation, at least one a quarter turn.
int32_t CountPieces(double radius, double span) {
  const double quarters = std::ceil(span / kQuarterTurn - kTurnSlack);
  // Without the cosine, which is just below 1, the estimate is exact or slightly too small.
  const double sine = std::min(std::pow(kMaxDeviation * 13.5 / radius, 1.0 / 6.0), 1.0);
  const double estimate = std::floor(span / (4.0 * std::asin(sine)));
  double count = std::clamp(std::max(quarters, estimate), 1.0, static_cast<double>(kMaxPieces));
  while (count < kMaxPieces && Deviation(radius, span / count) > kMaxDeviation) ++count;
  return static_cast<int32_t>(count);
}

// Returns the arc's angle, at most kTurn. An end below the start is increased by full turns until it is
// above.
double SpanOf(const HT_EllipArc& arc) {
  double span = arc.endAngle - arc.startAngle;
  if (span < 0) {
    span = kTurn - std::fmod(-span, kTurn);
    if (span < kTurnSlack) return kTurn;
  }
  return span < kTurn - kTurnSlack ? span : kTurn;
}

bool IsFinite(const HT_EllipArc& arc) {
  const double values[] = {arc.center.x, arc.center.y,   arc.radiusX,  arc.radiusY,
                           arc.rotation, arc.startAngle, arc.endAngle, arc.endAngle - arc.startAngle};
  return std::all_of(std::begin(values), std::end(values), [](double value) { return std::isfinite(value); });
}

// Evaluates the ellipse, including its rotation and centre.
class Frame {
 public:
  explicit Frame(const HT_EllipArc& arc)
      : center_(arc.center),
        radiusX_(arc.radiusX),
        radiusY_(arc.radiusY),
        cosine_(std::cos(arc.rotation)),
        sine_(std::sin(arc.rotation)) {}

  struct Sample {
    HT_Double_Point point;
    HT_Double_Point tangent;  // derivative by the parameter
  };

  [[nodiscard]] Sample At(double angle) const {
    const double x = std::cos(angle);
    const double y = std::sin(angle);
    const HT_Double_Point point = Turn(radiusX_ * x, radiusY_ * y);
    return {{center_.x + point.x, center_.y + point.y}, Turn(-radiusX_ * y, radiusY_ * x)};
  }

 private:
  [[nodiscard]] HT_Double_Point Turn(double x, double y) const {
    return {cosine_ * x - sine_ * y, sine_ * x + cosine_ * y};
  }

  HT_Double_Point center_;
  double radiusX_;
  double radiusY_;
  double cosine_;
  double sine_;
};

}  // namespace

HT_EllipArc::HT_EllipArc(const HT_Double_Point& arcCenter, double arcRadiusX, double arcRadiusY,
                         double arcRotation, double arcStartAngle, double arcEndAngle)
    : center(arcCenter),
      radiusX(arcRadiusX),
      radiusY(arcRadiusY),
      rotation(arcRotation),
      startAngle(arcStartAngle),
      endAngle(arcEndAngle) {}

HT_Double_Point HT_EllipArc::PointAt(double angle) const { return Frame(*this).At(angle).point; }

void HT_ConvertEllipArcToBezierCurves(const HT_EllipArc& arc, std::vector<HT_BezierCurve>& curves) {
  if (!IsFinite(arc) || arc.startAngle == arc.endAngle) return;
  const double span = SpanOf(arc);
  const bool whole = span == kTurn;

  const double radius = std::max(std::fabs(arc.radiusX), std::fabs(arc.radiusY));
  const int32_t count = CountPieces(radius, span);
  const double piece = span / count;
  const double reach = 4.0 / 3.0 * std::tan(piece / 4.0);

  const Frame frame(arc);
  const Frame::Sample first = frame.At(arc.startAngle);
  Frame::Sample from = first;
  const size_t old = curves.size();
  curves.resize(old + static_cast<size_t>(count));
  for (int32_t i = 1; i <= count; ++i) {
    const bool last = i == count;
    const Frame::Sample to =
        last && whole ? first : frame.At(last ? arc.endAngle : arc.startAngle + piece * i);
    curves[old + static_cast<size_t>(i) - 1] = {
        from.point,
        {from.point.x + reach * from.tangent.x, from.point.y + reach * from.tangent.y},
        {to.point.x - reach * to.tangent.x, to.point.y - reach * to.tangent.y},
        to.point};
    from = to;
  }
}

}  // namespace hdi
