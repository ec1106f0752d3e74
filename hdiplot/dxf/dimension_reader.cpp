#include "hdiplot/dxf/dimension_reader.h"

#include "hdiplot/dxf/object_plane.h"
#include "hdiplot/geometry/curves.h"

namespace hdiplot {

// Points are in world coordinates, except those of groups 11 and 16 and the direction.
std::optional<Dimension> ReadDimension(const DxfObject& entity,
                                       const std::map<std::string, DimensionStyle>& styles,
                                       const DimensionStyle& fallback, const TextDecoder& decoder) {
  constexpr uint64_t kKind = 7;
  constexpr uint64_t kAlongX = 64;
  constexpr uint64_t kLastKind = static_cast<uint64_t>(Dimension::Kind::kOrdinate);
  const Ocs plane = PlaneOf(entity);
  Dimension dimension;
  const uint64_t kind = entity.Flags(70) & kKind;
  if (kind > kLastKind || entity.Find(10) == nullptr) return std::nullopt;
  dimension.kind = static_cast<Dimension::Kind>(kind);
  dimension.isAlongX = (entity.Flags(70) & kAlongX) != 0;
  dimension.line = entity.Point(10);
  dimension.first = entity.Point(13);
  dimension.second = entity.Point(14);
  dimension.third = entity.Point(15);
  dimension.arc = plane.Project(entity.SpacePoint(16));
  // Writers leave the origin where they have not computed the place.
  if (entity.Point(11) != Vec2{}) dimension.textMiddle = plane.Project(entity.SpacePoint(11));
  dimension.direction = Unit(plane.Project(Direction(entity.Angle(50))));
  dimension.oblique = entity.Angle(52);
  if (entity.Real(53, 0) != 0) dimension.textRotation = entity.Angle(53);
  if (const Group* text = entity.Find(1)) {
    dimension.text = decoder.DecodeText(text->Raw(), Backslash::kStartsCode);
  }
  dimension.style = fallback;
  if (const Group* name = entity.Find(3)) {
    const auto style = styles.find(decoder.DecodeFoldedName(*name));
    if (style != styles.end()) dimension.style = style->second;
  }
  ReadOverrides(entity, decoder, dimension.style);
  return dimension;
}

}  // namespace hdiplot
