#include "hdiplot/dxf/spline_check.h"

#include <algorithm>
#include <functional>
#include <string>

#include "hdiplot/dxf/group.h"

namespace hdiplot {
namespace {

constexpr int kHighestDegree = 25;

// Ends that the curve runs through, and even steps between them.
std::vector<double> EvenKnots(size_t controlPoints, size_t degree) {
  std::vector<double> knots(controlPoints + degree + 1);
  const size_t steps = controlPoints - degree;
  for (size_t i = 0; i < knots.size(); ++i) {
    knots[i] = static_cast<double>(std::clamp(i, degree, degree + steps) - degree);
  }
  return knots;
}

void CheckKnots(const SplineEntity& spline, size_t place) {
  const size_t degree = static_cast<size_t>(spline.degree);
  const size_t needed = spline.controlPoints.size() + degree + 1;
  if (spline.knots.size() != needed) {
    throw DxfFault{place, "a spline of degree " + std::to_string(degree) + " with " +
                              std::to_string(spline.controlPoints.size()) + " control points needs " +
                              std::to_string(needed) + " knots, but has " +
                              std::to_string(spline.knots.size())};
  }
  if (!std::ranges::is_sorted(spline.knots)) throw DxfFault{place, "the spline's knots are not in order"};
  if (spline.knots[degree] >= spline.knots[spline.controlPoints.size()]) {
    throw DxfFault{place, "the spline's knots leave it no length"};
  }
}

void CheckWeights(SplineEntity& spline, size_t place) {
  if (spline.weights.empty()) return;
  if (spline.weights.size() != spline.controlPoints.size()) {
    throw DxfFault{place, "the spline has " + std::to_string(spline.controlPoints.size()) +
                              " control points, but " + std::to_string(spline.weights.size()) + " weights"};
  }
  if (std::ranges::any_of(spline.weights, [](double weight) { return weight <= 0; })) {
    throw DxfFault{place, "a weight of the spline is not above 0"};
  }
  if (std::ranges::adjacent_find(spline.weights, std::not_equal_to<>()) == spline.weights.end()) {
    spline.weights.clear();
  }
}

}  // namespace

void CompleteSpline(SplineEntity& spline, size_t place) {
  if (spline.degree < 1 || spline.degree > kHighestDegree) {
    throw DxfFault{place, "a spline cannot have the degree " + std::to_string(spline.degree)};
  }
  if (spline.controlPoints.empty()) {
    if (spline.fitPoints.size() < 2) throw DxfFault{place, "the spline has no points"};
    spline.knots.clear();
    spline.weights.clear();
    return;
  }
  const size_t degree = static_cast<size_t>(spline.degree);
  if (spline.controlPoints.size() <= degree) {
    throw DxfFault{place, "a spline of degree " + std::to_string(degree) + " needs " +
                              std::to_string(degree + 1) + " control points, but has " +
                              std::to_string(spline.controlPoints.size())};
  }
  if (spline.knots.empty()) spline.knots = EvenKnots(spline.controlPoints.size(), degree);
  CheckKnots(spline, place);
  CheckWeights(spline, place);
  spline.fitPoints.clear();
}

}  // namespace hdiplot
