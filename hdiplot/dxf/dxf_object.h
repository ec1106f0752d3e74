// One object of a DXF: what stands between one group 0 and the next, without reactors and comments, extended
// data apart. A header variable is one too, its type the variable's name.
#pragma once

#include <algorithm>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "hdiplot/dxf/fault_log.h"
#include "hdiplot/dxf/group.h"
#include "hdiplot/system/ascii_case.h"

namespace hdiplot {

struct DxfObject {
  std::string_view type;
  size_t place = 0;            // of the type's name, as in DxfFault
  FaultLog* faults = nullptr;  // never null, of the whole file
  std::vector<Group> groups;
  std::vector<Group> extended;  // codes from 1000, of all applications
  std::string_view dictionary;  // handle of the dictionary of what else belongs to it; empty: none

  // The first group of that code, or null.
  const Group* Find(int code) const {
    const auto found = std::ranges::find(groups, code, &Group::code);
    return found == groups.end() ? nullptr : &*found;
  }

  // The application's groups of the extended data, or none.
  std::span<const Group> ExtendedOf(std::string_view application) const {
    constexpr int kApplication = 1001;
    const auto first = std::ranges::find_if(extended, [application](const Group& group) {
      return group.code == kApplication && EqualWithoutCase(group.Value(), application);
    });
    if (first == extended.end()) return {};
    return {first + 1, std::ranges::find(first + 1, extended.end(), kApplication, &Group::code)};
  }

  double Real(int code, double fallback) const {
    const Group* group = Find(code);
    return group ? group->number : fallback;
  }

  int64_t Integer(int code, int64_t fallback) const {
    const Group* group = Find(code);
    return group ? group->Integer() : fallback;
  }

  size_t Count(int code) const { return static_cast<size_t>(std::ranges::count(groups, code, &Group::code)); }

  // Reports that the object says in the group `counting` that it has another number of something, which
  // counts.
  void CheckCount(const Group* counting, size_t counted) const {
    if (!counting || counting->Integer() == static_cast<int64_t>(counted)) return;
    faults->Report({counting->place, "group " + std::to_string(counting->code) + " of " + TypeName(type) +
                                         " says " + std::to_string(counting->Integer()) + ", but there are " +
                                         std::to_string(counted)});
  }

  // Throws DxfFault unless the object has a group of each code.
  void Require(std::span<const int> codes) const {
    for (const int code : codes) {
      if (!Find(code)) throw DxfFault{place, std::string(type) + " has no group " + std::to_string(code)};
    }
  }
};

}  // namespace hdiplot
