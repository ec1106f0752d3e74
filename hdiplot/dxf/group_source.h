// The groups of a DXF, from text (text_groups.cpp) or a binary file (binary_groups.cpp).
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "hdiplot/dxf/faults.h"
#include "hdiplot/dxf/group.h"

namespace hdiplot {

enum class ValueCheck : uint8_t {
  kNone,         // numbers are not parsed: for sections that are not used
  kNumber,       // numbers have to be finite
  kCoordinates,  // and real numbers within the range of a drawing
};

class GroupSource {
 public:
  virtual ~GroupSource() = default;

  enum class Step : uint8_t {
    kGroup,
    kBadValue,  // a group whose value does not fit its code
    kBadCode,   // no group; continue with SkipDamage
    kEnd,
  };

  // Reads the next group that is not a comment (999). The group points into the file.
  virtual Step Next(Group& group) = 0;

  // After kBadCode: returns to the start of the current object and moves on to the next object, at any line
  // or byte, since misplaced groups may have hidden it. Returns whether the current object was complete.
  virtual bool SkipDamage() = 0;

  // The fault behind kBadValue and kBadCode.
  [[nodiscard]] const DxfFault& Fault() const { return fault_; }

  // The number of bytes read so far, and the last place read, as in DxfFault.
  [[nodiscard]] virtual size_t Position() const = 0;
  [[nodiscard]] virtual size_t Place() const = 0;

  [[nodiscard]] virtual bool IsBinary() const = 0;

  // The unit of a place in messages: "line" or "byte".
  [[nodiscard]] virtual const char* PlaceName() const = 0;

  void SetValueCheck(ValueCheck check) { check_ = check; }

 protected:
  static constexpr int kComment = 999;

  // Groups that start an object or a header variable.
  static bool IsStart(int code) { return code == 0 || code == 9; }
  // Whether a start can have this value: names are in capitals.
  static bool StartsObject(int code, std::string_view value);

  // Whether the value of this group 0 can be a type. A number there means that codes and values are swapped.
  static bool IsPossibleType(const Group& group);
  Step FailAtType(const Group& group);

  [[nodiscard]] bool NeedsNumber(ValueForm form) const {
    return check_ != ValueCheck::kNone && IsNumber(form);
  }
  // Whether the number can be a value of that form. Writers differ in whether 32-bit numbers are signed.
  [[nodiscard]] bool IsUsable(ValueForm form, double number) const {
    if (form == ValueForm::kReal) {
      return std::fabs(number) <= (check_ == ValueCheck::kCoordinates ? kLargestCoordinate : kLargestDouble);
    }
    const bool fits = form == ValueForm::kInt64 || (number >= std::numeric_limits<int32_t>::min() &&
                                                    number <= std::numeric_limits<uint32_t>::max());
    return fits && number == std::trunc(number);
  }
  Step FailAtNumber(const Group& group, std::string_view written);

  Step Fail(Step step, size_t place, std::string message) {
    fault_ = {place, std::move(message)};
    return step;
  }

 private:
  // Far beyond any drawing, and low enough that sums and products of a few coordinates stay finite in single
  // precision.
  static constexpr double kLargestCoordinate = 1e30;
  static constexpr double kLargestDouble = std::numeric_limits<double>::max();

  ValueCheck check_ = ValueCheck::kNumber;
  DxfFault fault_{};
};

// Whether the file has the sentinel of a binary DXF.
[[nodiscard]] bool IsBinaryDxf(std::string_view file);

// The file, which is text or IsBinaryDxf, has to outlive the source.
[[nodiscard]] std::unique_ptr<GroupSource> MakeTextGroups(std::string_view file);
[[nodiscard]] std::unique_ptr<GroupSource> MakeBinaryGroups(std::string_view file);

}  // namespace hdiplot
