// What is wrong with a drawing, as it is found while the rest is read on.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "hdiplot/dxf/group.h"

namespace hdiplot {

class FaultLog {
 public:
  // Strict: the first fault ends the reading.
  explicit FaultLog(bool isStrict) : isStrict_(isStrict) {}

  [[nodiscard]] bool IsStrict() const { return isStrict_; }

  // Throws the fault when strict. Only the first ones are kept.
  void Report(DxfFault fault) {
    if (isStrict_) throw DxfFault(std::move(fault));
    if (first_.size() < kMostKept) first_.push_back(std::move(fault));
    ++count_;
  }

  // Of an object that the drawing does without.
  void ReportLeftOut(DxfFault fault, std::string_view type) {
    if (!isStrict_) fault.message += "; this " + TypeName(type) + " is left out";
    Report(std::move(fault));
  }

  [[nodiscard]] const std::vector<DxfFault>& First() const { return first_; }
  [[nodiscard]] size_t Count() const { return count_; }

 private:
  static constexpr size_t kMostKept = 10;

  bool isStrict_;
  std::vector<DxfFault> first_;
  size_t count_ = 0;
};

}  // namespace hdiplot
