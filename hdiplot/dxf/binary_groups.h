// The groups of a binary DXF: codes of two bytes, or of one in files up to R12, each with its value right
// behind it; texts end in a zero byte, and numbers are little-endian.
#pragma once

#include <cstddef>
#include <string_view>

#include "hdiplot/dxf/group_source.h"

namespace hdiplot {

// Whether the file starts like a binary DXF: the name of a program and the mark behind it.
[[nodiscard]] bool IsBinaryDxf(std::string_view file);

class BinaryGroups : public GroupSource {
 public:
  // A file that IsBinaryDxf. It has to outlive the groups.
  explicit BinaryGroups(std::string_view file);

  Step Next(Group& group) override;
  bool SkipDamage() override;
  [[nodiscard]] size_t Position() const override { return at_; }
  [[nodiscard]] size_t Place() const override { return at_; }
  [[nodiscard]] const char* PlaceName() const override { return "byte"; }

 private:
  [[nodiscard]] size_t Left() const { return file_.size() - at_; }
  bool TakeCode(int& code);
  bool TakeText(Group& group);
  bool TakeBytes(Group& group);
  template <typename Number>
  bool TakeNumber(Group& group);
  bool TakeValue(Group& group);

  std::string_view file_;
  size_t at_;
  size_t object_;  // behind the start of the object at hand
  bool hasWideCodes_;
};

}  // namespace hdiplot
