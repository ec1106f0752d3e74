// Comparison of clips.
#include "composition/page_objects.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace hdi {

Clip::Clip(PathPoints clipPoints)
    : points(std::move(clipPoints)), comparable(std::ranges::none_of(points, [](const PathPoint& p) {
        return std::isnan(p.x) || std::isnan(p.y);
      })) {}

bool Clip::SamePoints(const Clip& other) const {
  if (this == &other) return comparable;
  return std::ranges::equal(points, other.points,
                            [](const PathPoint& a, const PathPoint& b) { return a.x == b.x && a.y == b.y; });
}

}  // namespace hdi
