#include "hdiplot/dxf/dxf_object.h"

#include <fmt/format.h>

#include <algorithm>

#include "hdiplot/geometry/curves.h"
#include "hdiplot/system/ascii_case.h"

namespace hdiplot {

std::string HandleKey(std::string_view handle) { return UpperCase(handle); }

const Group* FindIn(std::span<const Group> groups, int code) {
  const auto found = std::ranges::find(groups, code, &Group::code);
  return found == groups.end() ? nullptr : &*found;
}

double DxfObject::Angle(int code) const { return Radians(Real(code, 0)); }

const Group& DxfObject::Needed(int code) const {
  if (const Group* group = Find(code)) return *group;
  throw DxfFault{place, fmt::format("{} has no group {}", type, code)};
}

std::vector<Vec2> DxfObject::Points(int code) const {
  const auto count = [this](int of) { return std::ranges::count(groups, of, &Group::code); };
  std::vector<Vec2> points;
  points.reserve(static_cast<size_t>(count(code)));
  if (count(code + 10) != count(code)) {
    throw DxfFault{place, fmt::format("{} has points with only one coordinate", type)};
  }
  for (const Group& group : groups) {
    if (group.code == code) points.push_back({group.number, 0});
    if (group.code == code + 10 && !points.empty()) points.back().y = group.number;
  }
  return points;
}

std::span<const Group> DxfObject::ExtendedOf(std::string_view application) const {
  constexpr int kApplication = 1001;
  const auto first = std::ranges::find_if(extended, [application](const Group& group) {
    return group.code == kApplication && EqualWithoutCase(group.Value(), application);
  });
  if (first == extended.end()) return {};
  return {first + 1, std::ranges::find(first + 1, extended.end(), kApplication, &Group::code)};
}

void DxfObject::CheckCount(const Group* counting, size_t counted) const {
  if (!counting || counting->Integer() == static_cast<int64_t>(counted)) return;
  faults.Report({counting->place, fmt::format("group {} of {} says {}, but there are {}", counting->code,
                                              TypeName(type), counting->Integer(), counted)});
}

}  // namespace hdiplot
