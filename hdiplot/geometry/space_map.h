// Affine maps of space.
#pragma once

#include <array>
#include <cstddef>

#include "hdiplot/geometry/points.h"

namespace hdiplot {

class SpaceMap {
 public:
  SpaceMap() = default;
  // Each row is three factors and a shift.
  explicit SpaceMap(const std::array<double, 12>& rows) : rows_(rows) {}

  [[nodiscard]] Vec3 Direction(Vec3 v) const { return {Row(0, v), Row(1, v), Row(2, v)}; }
  [[nodiscard]] Vec3 operator()(Vec3 p) const {
    const Vec3 d = Direction(p);
    return {d.x + rows_[3], d.y + rows_[7], d.z + rows_[11]};
  }
  // The map that applies `inner` first.
  [[nodiscard]] SpaceMap After(const SpaceMap& inner) const {
    SpaceMap map;
    const auto column = [&inner](size_t i) {
      return Vec3{inner.rows_[i], inner.rows_[4 + i], inner.rows_[8 + i]};
    };
    for (size_t i = 0; i < 4; ++i) {
      const Vec3 image = i == 3 ? (*this)(column(i)) : Direction(column(i));
      map.rows_[i] = image.x;
      map.rows_[4 + i] = image.y;
      map.rows_[8 + i] = image.z;
    }
    return map;
  }

 private:
  [[nodiscard]] double Row(size_t row, Vec3 v) const {
    return rows_[4 * row] * v.x + rows_[4 * row + 1] * v.y + rows_[4 * row + 2] * v.z;
  }

  std::array<double, 12> rows_{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0};
};

}  // namespace hdiplot
