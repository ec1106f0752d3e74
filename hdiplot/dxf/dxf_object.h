// One object of a DXF: the groups from one group 0 to the next, without reactors and comments, extended data
// apart. A header variable is one too; its type is the name of the variable.
#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "hdiplot/dxf/faults.h"
#include "hdiplot/dxf/group.h"
#include "hdiplot/geometry/points.h"

namespace hdiplot {

// The form of a handle, the hexadecimal number of an object, by which objects are looked up.
[[nodiscard]] std::string HandleKey(std::string_view handle);

// The first group of that code, or null.
[[nodiscard]] const Group* FindIn(std::span<const Group> groups, int code);

class DxfObject {
 public:
  explicit DxfObject(FaultLog& log) : faults(log) {}

  std::string_view type;
  size_t place = 0;  // of the type's name, as in DxfFault
  FaultLog& faults;  // of the whole file
  std::vector<Group> groups;
  std::vector<Group> extended;  // codes from 1000, of all applications
  bool isBinary = false;        // of the file: bytes are as they are, not in hexadecimal digits
  std::vector<Group> embedded;  // from group 101 on, of an MTEXT
  std::string_view dictionary;  // handle of the extension dictionary; empty: none

  void Clear() {
    groups.clear();
    extended.clear();
    embedded.clear();
    dictionary = {};
  }

  // Makes the last of `groups` known to Find.
  void IndexLast() {
    const int code = groups.back().code;
    if (!Find(code)) first_[static_cast<size_t>(code)] = static_cast<uint32_t>(groups.size() - 1);
  }

  // The first group of that code, or null.
  [[nodiscard]] const Group* Find(int code) const {
    const size_t index = first_[static_cast<size_t>(code)];
    return index < groups.size() && groups[index].code == code ? &groups[index] : nullptr;
  }

  // The value of the first group of that code; an empty text if there is none. An angle is converted from
  // degrees to radians.
  [[nodiscard]] double Real(int code, double fallback) const {
    const Group* group = Find(code);
    return group ? group->number : fallback;
  }
  [[nodiscard]] double Angle(int code) const;
  [[nodiscard]] std::string_view Text(int code) const {
    const Group* group = Find(code);
    return group ? group->Value() : std::string_view();
  }
  [[nodiscard]] int64_t Integer(int code, int64_t fallback) const {
    const Group* group = Find(code);
    return group ? group->Integer() : fallback;
  }
  [[nodiscard]] uint64_t Flags(int code, int64_t fallback = 0) const {
    return static_cast<uint64_t>(Integer(code, fallback));
  }

  // The point with X in the group `code`, Y in code + 10 and Z in code + 20; 0 where there is none.
  [[nodiscard]] Vec2 Point(int code) const { return {Real(code, 0), Real(code + 10, 0)}; }
  [[nodiscard]] Vec3 SpacePoint(int code) const {
    return {Real(code, 0), Real(code + 10, 0), Real(code + 20, 0)};
  }

  // The same of what the object has to have. Throw DxfFault where it is missing.
  [[nodiscard]] const Group& Needed(int code) const;
  [[nodiscard]] Vec2 NeededPoint(int code) const { return {Needed(code).number, Needed(code + 10).number}; }

  // All points of one code. Throws DxfFault for one without Y.
  [[nodiscard]] std::vector<Vec2> Points(int code) const;

  // The extended data of one application.
  [[nodiscard]] std::span<const Group> ExtendedOf(std::string_view application) const;

  // Reports a `counting` group that differs from the number of things there are. Null: not counted.
  void CheckCount(const Group* counting, size_t counted) const;

 private:
  // Where to find the first group of each code. Entries are not reset between objects: one is valid if the
  // group there has its code, which then is the first, as IndexLast sees to.
  std::array<uint32_t, kHighestCode + 1> first_{};
};

}  // namespace hdiplot
