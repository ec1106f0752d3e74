// Faults of a DXF file, collected while reading goes on.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace hdiplot {

// A fault at a place of the file: the number of a line of text, or of a byte of a binary file, both from 1.
// Thrown inside the reader only; ReadDxf adds the file's name.
struct DxfFault {
  size_t place;
  std::string message;
};

// A piece of the file for a message: quoted, shortened, without control characters.
[[nodiscard]] std::string Quoted(std::string_view text);

// The type of an object for a message: shortened, printable ASCII.
[[nodiscard]] std::string TypeName(std::string_view type);

class FaultLog {
 public:
  // Strict: the first fault is thrown.
  explicit FaultLog(bool isStrict) : isStrict_(isStrict) {}

  [[nodiscard]] bool IsStrict() const { return isStrict_; }

  void Report(DxfFault fault) {
    if (isStrict_) throw DxfFault(std::move(fault));
    if (first_.size() < kMostKept) first_.push_back(std::move(fault));
    ++count_;
  }

  // Reports the fault of an object of this type that is left out.
  void ReportLeftOut(DxfFault fault, std::string_view type) {
    if (!isStrict_) fault.message += "; this " + TypeName(type) + " is left out";
    Report(std::move(fault));
  }

  // The first few of all that were reported.
  [[nodiscard]] const std::vector<DxfFault>& First() const { return first_; }
  [[nodiscard]] size_t Count() const { return count_; }

 private:
  static constexpr size_t kMostKept = 10;

  bool isStrict_;
  std::vector<DxfFault> first_;
  size_t count_ = 0;
};

}  // namespace hdiplot
