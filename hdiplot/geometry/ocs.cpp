// The arbitrary axis algorithm of DXF.
#include "hdiplot/geometry/ocs.h"

#include <cmath>

namespace hdiplot {
namespace {

// Below this, the other parts of a unit vector along Z are rounding noise.
constexpr double kStraight = 1e-9;

Vec3 Normalized(Vec3 v) { return v / Length(v); }

}  // namespace

Ocs::Ocs(Vec3 extrusion) {
  if (Length(extrusion) < 1e-100) extrusion = {0, 0, 1};
  axisZ_ = Normalized(extrusion);
  if (std::hypot(axisZ_.x, axisZ_.y) < kStraight) {
    kind_ = axisZ_.z > 0 ? Kind::kWorld : Kind::kMirrored;
    axisX_ = {axisZ_.z > 0 ? 1.0 : -1.0, 0, 0};
    axisY_ = {0, 1, 0};
    axisZ_ = {0, 0, axisX_.x};
    return;
  }
  kind_ = Kind::kTilted;
  const double kNearZ = 1.0 / 64;
  const bool nearZ = std::fabs(axisZ_.x) < kNearZ && std::fabs(axisZ_.y) < kNearZ;
  axisX_ = Normalized(Cross(nearZ ? Vec3{0, 1, 0} : Vec3{0, 0, 1}, axisZ_));
  axisY_ = Normalized(Cross(axisZ_, axisX_));
}

Vec2 Ocs::Project(Vec3 point) const {
  if (kind_ == Kind::kWorld) return {point.x, point.y};
  if (kind_ == Kind::kMirrored) return {-point.x, point.y};
  return {axisX_.x * point.x + axisY_.x * point.y + axisZ_.x * point.z,
          axisX_.y * point.x + axisY_.y * point.y + axisZ_.y * point.z};
}

}  // namespace hdiplot
