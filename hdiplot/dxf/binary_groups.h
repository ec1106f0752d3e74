// The groups of a binary DXF: a code of two bytes, or of one in files up to R12, followed by its value. Texts
// end in a zero byte; numbers are little-endian.
#pragma once

#include <cstddef>
#include <string_view>

#include "hdiplot/dxf/group_source.h"

namespace hdiplot {

// Whether the file has the sentinel of a binary DXF, which follows the name of a program.
[[nodiscard]] bool IsBinaryDxf(std::string_view file);

class BinaryGroups : public GroupSource {
 public:
  // `file` has to outlive the groups; IsBinaryDxf(file).
  explicit BinaryGroups(std::string_view file);

  Step Next(Group& group) override;
  bool SkipDamage() override;
  [[nodiscard]] size_t Position() const override { return at_; }
  [[nodiscard]] size_t Place() const override { return at_; }
  [[nodiscard]] const char* PlaceName() const override { return "byte"; }

 private:
  [[nodiscard]] size_t Left() const { return file_.size() - at_; }
  // These return false, and take nothing, where the file has no such thing.
  bool TakeCode(int& code);
  bool TakeValue(ValueForm form, Group& group);
  bool TakeText(Group& group);
  bool TakeBytes(Group& group);
  template <typename Number>
  bool TakeNumber(Group& group);

  std::string_view file_;
  size_t at_;
  size_t object_;  // after the start of the current object
  bool hasWideCodes_;
};

}  // namespace hdiplot
