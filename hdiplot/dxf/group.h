// A group of a DXF: a code, which determines the type of the value, and the value.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "hdiplot/system/split.h"

namespace hdiplot {

// Kept small: a large polyline has very many.
struct Group {
  int code = 0;
  uint32_t length = 0;
  const char* text = nullptr;  // in the file
  double number = 0;           // the value of a numeric code
  size_t place = 0;            // of the value, as in DxfFault

  // The text with and without the blanks around it.
  [[nodiscard]] std::string_view Raw() const { return {text, length}; }
  [[nodiscard]] std::string_view Value() const { return Trimmed(Raw()); }
  [[nodiscard]] int64_t Integer() const { return static_cast<int64_t>(number); }
  [[nodiscard]] size_t CodePlace() const { return place - 1; }
};

inline constexpr int kHighestCode = 1071;

// The type of a code's values, and their form in a binary file.
enum class ValueForm : uint8_t { kUnknown, kText, kBytes, kReal, kInt8, kInt16, kInt32, kInt64 };

struct CodeRange {
  int first;
  int last;
  ValueForm form;
};

inline constexpr std::array kForms = {
    CodeRange{0, 9, ValueForm::kText},        CodeRange{10, 59, ValueForm::kReal},
    CodeRange{60, 89, ValueForm::kInt16},     CodeRange{90, 99, ValueForm::kInt32},
    CodeRange{100, 109, ValueForm::kText},    CodeRange{110, 149, ValueForm::kReal},
    CodeRange{160, 169, ValueForm::kInt64},   CodeRange{170, 179, ValueForm::kInt16},
    CodeRange{210, 239, ValueForm::kReal},    CodeRange{270, 289, ValueForm::kInt16},
    CodeRange{290, 299, ValueForm::kInt8},    CodeRange{300, 309, ValueForm::kText},
    CodeRange{310, 319, ValueForm::kBytes},   CodeRange{320, 369, ValueForm::kText},
    CodeRange{370, 389, ValueForm::kInt16},   CodeRange{390, 399, ValueForm::kText},
    CodeRange{400, 409, ValueForm::kInt16},   CodeRange{410, 419, ValueForm::kText},
    CodeRange{420, 429, ValueForm::kInt32},   CodeRange{430, 439, ValueForm::kText},
    CodeRange{440, 459, ValueForm::kInt32},   CodeRange{460, 469, ValueForm::kReal},
    CodeRange{470, 489, ValueForm::kText},    CodeRange{999, 1003, ValueForm::kText},
    CodeRange{1004, 1004, ValueForm::kBytes}, CodeRange{1005, 1009, ValueForm::kText},
    CodeRange{1010, 1059, ValueForm::kReal},  CodeRange{1060, 1070, ValueForm::kInt16},
    CodeRange{1071, 1071, ValueForm::kInt32},
};

inline constexpr auto kFormByCode = [] {
  std::array<ValueForm, kHighestCode + 1> forms{};
  for (const CodeRange& range : kForms) {
    for (int code = range.first; code <= range.last; ++code) forms[static_cast<size_t>(code)] = range.form;
  }
  return forms;
}();

// For a code from 0 to kHighestCode. A text file may have values of unknown form.
[[nodiscard]] inline ValueForm FormOf(int code) { return kFormByCode[static_cast<size_t>(code)]; }
[[nodiscard]] inline bool IsNumber(ValueForm form) { return form >= ValueForm::kReal; }

}  // namespace hdiplot
