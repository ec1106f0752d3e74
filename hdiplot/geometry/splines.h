// Splines as sequences of cubic curves.
#pragma once

#include <vector>

#include "hdiplot/geometry/curves.h"

namespace hdiplot {

struct Spline {
  int degree = 3;
  std::vector<double> knots;  // controlPoints.size() + degree + 1
  std::vector<Vec2> controlPoints;
  std::vector<double> weights;  // empty: all 1
  std::vector<Vec2> fitPoints;  // used when there are no control points
  bool closed = false;
};

// Appends the cubic curves of `spline` in order: exact when its degree is at most 3 and it has no weights,
// otherwise within about `tolerance`. A spline without control points is the smooth curve through its fit
// points. One whose knots do not match its control points is drawn as their polygon, so that a faulty file
// still shows something.
void AppendCubics(const Spline& spline, double tolerance, std::vector<Cubic>& cubics);

}  // namespace hdiplot
