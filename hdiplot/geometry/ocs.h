// Object coordinate systems: an entity with an extrusion direction is drawn in a plane of its own, which is
// projected along Z onto the drawing's plane here.
#pragma once

#include <numbers>

#include "hdiplot/dxf/dxf_object.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

// The angles of a DXF are in degrees.
constexpr double Radians(double degrees) { return degrees * (std::numbers::pi / 180); }

struct Vec3 {
  double x = 0;
  double y = 0;
  double z = 0;
};

// Where an arc starts and ends, in radians or as an ellipse's parameter.
struct Sweep {
  double start = 0;
  double end = 0;
};

// The same arc with its end above its start, by a whole turn at most, and its start less than two whole turns
// from 0. Without a difference it is a whole turn.
Sweep NormalizedSweep(double start, double end);

class Ocs {
 public:
  enum class Kind {
    kWorld,     // extrusion (0,0,1): seen from above as it is
    kMirrored,  // extrusion (0,0,-1): X runs the other way
    kTilted,    // any other
  };

  Ocs() = default;  // the direction (0,0,1)
  // The direction's length does not matter; without a length it counts as (0,0,1).
  explicit Ocs(Vec3 extrusion);
  // From groups 210, 220 and 230.
  static Ocs Of(const DxfObject& object);

  Kind GetKind() const { return kind_; }

  // A point or a direction of the plane (its z the elevation), as seen from above.
  Vec2 Project(Vec3 point) const;
  Vec2 Project(Vec2 point, double elevation = 0) const { return Project({point.x, point.y, elevation}); }

  // A circular arc from one angle to the other, which may run either way: the end below the start is
  // clockwise. What comes out of a mirrored plane runs the other way round.
  HatchEdge ProjectArc(Vec2 center, double elevation, double radius, Sweep sweep) const;
  // An arc that runs counter-clockwise before and after.
  Shape ProjectArcEntity(Vec2 center, double elevation, double radius, Sweep sweep) const;
  // Bulges change their sign in a mirrored plane, and become chords in a tilted one.
  PolylineEntity ProjectPolyline(PolylineEntity polyline, double elevation) const;

  // The direction that an ELLIPSE's minor axis has in space: the extrusion direction times the major axis.
  Vec3 MinorDirection(Vec3 major) const;

 private:
  Vec3 axisX_{1, 0, 0};
  Vec3 axisY_{0, 1, 0};
  Vec3 axisZ_{0, 0, 1};
  Kind kind_ = Kind::kWorld;
};

// The ellipse centre + u cos t + v sin t by its principal axes, the parameters moved along.
EllipseEntity EllipseFromDiameters(Vec2 center, Vec2 u, Vec2 v, Sweep sweep);

}  // namespace hdiplot
