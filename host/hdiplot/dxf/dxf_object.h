// One object of a DXF: what stands between one group 0 and the next, without reactors and comments, extended
// data apart. A header variable is one too, its type the variable's name.
#pragma once

#include <algorithm>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/hdiplot/ascii_case.h"
#include "host/hdiplot/dxf/group_reader.h"

namespace hdiplot {

struct DxfObject {
  std::string_view type;
  size_t line = 0;  // of the type's name
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
      return group.code == kApplication && EqualWithoutCase(group.value, application);
    });
    if (first == extended.end()) return {};
    return {first + 1, std::ranges::find(first + 1, extended.end(), kApplication, &Group::code)};
  }

  double Real(int code, double fallback) const {
    const Group* group = Find(code);
    return group ? group->real : fallback;
  }

  int64_t Integer(int code, int64_t fallback) const {
    const Group* group = Find(code);
    return group ? group->integer : fallback;
  }

  size_t Count(int code) const { return static_cast<size_t>(std::ranges::count(groups, code, &Group::code)); }

  // Throws DxfFault if the object says in the group `countCode` that it has another number of something.
  void CheckCount(int countCode, size_t counted) const {
    const Group* declared = Find(countCode);
    if (!declared || declared->integer == static_cast<int64_t>(counted)) return;
    throw DxfFault{declared->ValueLine(), "group " + std::to_string(countCode) + " of " + std::string(type) +
                                              " says " + std::to_string(declared->integer) +
                                              ", but there are " + std::to_string(counted)};
  }

  // Throws DxfFault unless the object has a group of each code.
  void Require(std::span<const int> codes) const {
    for (const int code : codes) {
      if (!Find(code)) throw DxfFault{line, std::string(type) + " has no group " + std::to_string(code)};
    }
  }
};

}  // namespace hdiplot
