// Where groups come from: text (text_groups.h) or a binary file (binary_groups.h), which say the same.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

#include "hdiplot/dxf/group.h"

namespace hdiplot {

class GroupSource {
 public:
  virtual ~GroupSource() = default;

  enum class Step : uint8_t {
    kGroup,
    kBadValue,  // a group, but its value is none of its code
    kBadCode,   // no group; SkipDamage leads on
    kEnd,
  };

  // Reads the next group that is no comment (999). What is in the group points into the file.
  virtual Step Next(Group& group) = 0;

  // Behind kBadCode: goes back to the object at hand and on to the next one that starts there, on whatever
  // line or byte. Groups that have slipped by one may have hidden it. Whether all of the object at hand had
  // been read.
  virtual bool SkipDamage() = 0;

  // What was wrong, behind kBadValue and kBadCode.
  [[nodiscard]] const DxfFault& Fault() const { return fault_; }

  // How much of the file is read, in bytes; and the last place read, as in DxfFault.
  [[nodiscard]] virtual size_t Position() const = 0;
  [[nodiscard]] virtual size_t Place() const = 0;

  // What a place is, for messages: "line" or "byte".
  [[nodiscard]] virtual const char* PlaceName() const = 0;

  void SetValueCheck(ValueCheck check) { check_ = check; }

 protected:
  Step Fail(Step step, size_t place, std::string message) {
    fault_ = {place, std::move(message)};
    return step;
  }

  // No type of object is a number; where one stands there, codes and values have changed places.
  static bool IsPossibleStart(const Group& group) {
    return group.code != 0 || std::ranges::any_of(group.Value(), [](char c) { return c >= 'A'; });
  }
  Step FailAtStart(const Group& group) {
    return Fail(Step::kBadCode, group.place,
                "the type of an object should stand here, but it is " + Quoted(group.Value()));
  }

  static constexpr int kComment = 999;

  ValueCheck check_ = ValueCheck::kNumber;

 private:
  DxfFault fault_{};
};

}  // namespace hdiplot
