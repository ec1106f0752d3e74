// A group of a DXF: a code that tells what the value is, and the value.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

namespace hdiplot {

// Something is wrong at a place of the DXF: a line of text, or the number of a byte in a binary file, both
// from 1. Thrown inside the reader only; ReadDxf adds the file's name.
struct DxfFault {
  size_t place;
  std::string message;
};

[[nodiscard]] constexpr bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

[[nodiscard]] constexpr std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

// Large polylines are many groups, so that these are kept small.
struct Group {
  int code = 0;
  uint32_t length = 0;
  const char* text = nullptr;  // in the file
  double number = 0;           // of a code that stands for one
  size_t place = 0;            // of the value, as in DxfFault

  // A text in which blanks count, and one in which they do not.
  [[nodiscard]] std::string_view Raw() const { return {text, length}; }
  [[nodiscard]] std::string_view Value() const { return Trimmed(Raw()); }
  [[nodiscard]] int64_t Integer() const { return static_cast<int64_t>(number); }
  [[nodiscard]] size_t CodePlace() const { return place - 1; }
};

inline constexpr int kHighestCode = 1071;

// What the values of a group code are, and how a binary file has them.
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

// Of a code from 0 to kHighestCode. A text file has values of an unknown form as text.
[[nodiscard]] inline ValueForm FormOf(int code) { return kFormByCode[static_cast<size_t>(code)]; }
[[nodiscard]] inline bool IsNumber(ValueForm form) { return form >= ValueForm::kReal; }

enum class ValueCheck : uint8_t {
  kNone,         // numbers are left unread: for sections that nobody looks into
  kNumber,       // numbers are read, and have to be finite numbers
  kCoordinates,  // and real numbers have to be of a size that a drawing can have
};

// Far beyond any drawing, and far enough below the largest float that sums and products of a few coordinates
// and their way through single precision stay finite.
inline constexpr double kLargestCoordinate = 1e30;

// Whether the number can be the value of the code. Whether those of 32 bits have a sign depends on who wrote
// them.
[[nodiscard]] inline bool IsUsable(int code, double number, ValueCheck check) {
  constexpr double kAny = std::numeric_limits<double>::max();
  const ValueForm form = FormOf(code);
  if (form == ValueForm::kReal) {
    return std::fabs(number) <= (check == ValueCheck::kCoordinates ? kLargestCoordinate : kAny);
  }
  const bool fits = form == ValueForm::kInt64 || (number >= std::numeric_limits<int32_t>::min() &&
                                                  number <= std::numeric_limits<uint32_t>::max());
  return fits && number == std::trunc(number);
}

// What is wrong with a number that cannot.
[[nodiscard]] std::string NumberProblem(int code, double number, std::string_view written);

// Whether a group 0 of that value can start an object, or a group 9 a header variable: names are capitals.
[[nodiscard]] bool StartsObject(int code, std::string_view value);

// A piece of the file for a message: in quotes, shortened, with nothing in it that upsets a terminal.
[[nodiscard]] std::string Quoted(std::string_view text);

// A type of entity as a message names it: printable ASCII, and not long.
[[nodiscard]] std::string TypeName(std::string_view type);

}  // namespace hdiplot
