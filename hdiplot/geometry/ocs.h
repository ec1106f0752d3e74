// Object coordinate systems: the plane of an entity with an extrusion direction, projected along Z onto the
// drawing's plane.
#pragma once

#include <cstdint>

#include "hdiplot/geometry/points.h"

namespace hdiplot {

class Ocs {
 public:
  enum class Kind : uint8_t {
    kWorld,     // extrusion (0,0,1): unchanged
    kMirrored,  // extrusion (0,0,-1): X is negated
    kTilted,    // any other
  };

  Ocs() = default;  // the direction (0,0,1)
  // The direction's length does not matter; without a length it counts as (0,0,1).
  explicit Ocs(Vec3 extrusion);

  [[nodiscard]] Kind GetKind() const { return kind_; }

  // A point or a direction of the plane (its z the elevation), as seen from above.
  [[nodiscard]] Vec2 Project(Vec3 point) const;
  [[nodiscard]] Vec2 Project(Vec2 point, double elevation = 0) const {
    return Project({point.x, point.y, elevation});
  }

  // The direction of an ELLIPSE's minor axis in space: the extrusion direction times the major axis.
  [[nodiscard]] Vec3 MinorDirection(Vec3 major) const { return Cross(axisZ_, major); }

 private:
  Vec3 axisX_{1, 0, 0};
  Vec3 axisY_{0, 1, 0};
  Vec3 axisZ_{0, 0, 1};
  Kind kind_ = Kind::kWorld;
};

}  // namespace hdiplot
