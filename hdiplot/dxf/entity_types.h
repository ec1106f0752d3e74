// The types of entities that are plotted.
#pragma once

#include <algorithm>
#include <string_view>

namespace hdiplot {

inline constexpr std::string_view kPlottedTypes[] = {
    "LINE",   "LWPOLYLINE", "TEXT",   "MTEXT",  "INSERT", "ARC",     "CIRCLE",   "POLYLINE",
    "VERTEX", "SEQEND",     "ATTRIB", "ATTDEF", "HATCH",  "SPLINE",  "ELLIPSE",  "POINT",
    "SOLID",  "TRACE",      "3DFACE", "LEADER", "IMAGE",  "WIPEOUT", "VIEWPORT", "DIMENSION"};

[[nodiscard]] inline bool IsPlottedType(std::string_view type) {
  return std::ranges::find(kPlottedTypes, type) != std::end(kPlottedTypes);
}

// What others are held together by, so that it is of use whatever else it says.
[[nodiscard]] inline bool IsPolylineMark(std::string_view type) {
  return type == "POLYLINE" || type == "SEQEND";
}

}  // namespace hdiplot
