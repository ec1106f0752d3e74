// Comparison of numbers with a tolerance.
#include <cmath>

#include "platform/host_library.h"

bool isEqual(double a, double b, double tolerance) { return std::fabs(a - b) < tolerance; }
