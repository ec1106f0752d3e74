// Lines, group codes and numbers of a DXF. Numbers are read with std::from_chars: no locale, no allocation.
#include "host/hdiplot/dxf/group_reader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

namespace hdiplot {
namespace {

constexpr int kHighestCode = 1071;
constexpr int kCommentCode = 999;

// Far beyond any drawing, and far enough below the largest float that sums and products of a few coordinates
// and their way through single precision stay finite.
constexpr double kLargestCoordinate = 1e30;

// dxflib reads lines of at most 1023 characters; a number that long is none in earnest.
constexpr size_t kLongestNumber = 512;

struct CodeRange {
  int first;
  int last;
  ValueKind kind;
};

// What is not listed is text: names, handles, binary data in hexadecimal digits.
constexpr std::array kNumericCodes = {
    CodeRange{10, 59, ValueKind::kReal},        CodeRange{60, 99, ValueKind::kInteger},
    CodeRange{110, 149, ValueKind::kReal},      CodeRange{160, 179, ValueKind::kInteger},
    CodeRange{210, 239, ValueKind::kReal},      CodeRange{270, 299, ValueKind::kInteger},
    CodeRange{370, 389, ValueKind::kInteger},   CodeRange{400, 409, ValueKind::kInteger},
    CodeRange{420, 429, ValueKind::kInteger},   CodeRange{440, 459, ValueKind::kInteger},
    CodeRange{460, 469, ValueKind::kReal},      CodeRange{1010, 1059, ValueKind::kReal},
    CodeRange{1060, 1071, ValueKind::kInteger},
};

constexpr auto kKinds = [] {
  std::array<ValueKind, kHighestCode + 1> kinds{};
  for (const CodeRange& range : kNumericCodes) {
    for (int code = range.first; code <= range.last; ++code) kinds[static_cast<size_t>(code)] = range.kind;
  }
  return kinds;
}();

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n\f\v";
  const size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// Reads the whole of the text as a number. std::from_chars knows no plus sign, and calls what is too small
// for a double out of range just like what is too large.
bool ParseReal(std::string_view text, double& value) {
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  if (text.empty() || text.front() == '+') return false;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (end != text.data() + text.size()) return false;
  if (error == std::errc::result_out_of_range) {
    const size_t exponent = text.find_first_of("eE");
    const bool tooSmall = exponent != std::string_view::npos && text.substr(exponent + 1).starts_with('-');
    value = tooSmall ? 0.0 : std::numeric_limits<double>::infinity();
    return true;
  }
  return error == std::errc{};
}

// Some writers put whole numbers down as reals ("1.0"); that is harmless.
bool ParseInteger(std::string_view text, int64_t& value) {
  const std::string_view digits = text.starts_with('+') ? text.substr(1) : text;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (error == std::errc{} && end == digits.data() + digits.size()) return true;
  double real = 0;
  if (!ParseReal(text, real) || !(std::fabs(real) < 9e15) || real != std::trunc(real)) return false;
  value = static_cast<int64_t>(real);
  return true;
}

// Groups 160 to 169 are the only ones of 64 bits. Whether the others have a sign depends on who wrote them.
bool FitsCode(const Group& group) {
  if (group.code >= 160 && group.code <= 169) return true;
  return group.integer >= std::numeric_limits<int32_t>::min() &&
         group.integer <= std::numeric_limits<uint32_t>::max();
}

}  // namespace

ValueKind KindOfGroup(int code) { return kKinds[static_cast<size_t>(code)]; }

std::string Quoted(std::string_view text) {
  constexpr size_t kLongest = 40;
  std::string quoted = "\"";
  for (const char c : text.substr(0, kLongest)) {
    quoted += static_cast<unsigned char>(c) < 0x20 || c == 0x7f ? '?' : c;
  }
  return quoted + (text.size() > kLongest ? "...\"" : "\"");
}

std::string TypeName(std::string_view type) {
  constexpr size_t kLongest = 40;
  std::string name(type.substr(0, kLongest));
  std::ranges::replace_if(
      name, [](char c) { return c < 0x20 || c >= 0x7f; }, '?');
  return type.size() > kLongest ? name + "..." : name;
}

GroupReader::GroupReader(std::string_view text)
    : text_(text), lineEnd_(text.find('\n') == std::string_view::npos ? '\r' : '\n') {}

bool GroupReader::Next(Group& group) {
  do {
    std::string_view content;
    if (!NextLine(content)) return false;
    if (Trimmed(content).empty() && Trimmed(text_.substr(position_)).empty()) return false;
    group.line = line_;
    group.code = ReadCode(Trimmed(content));
    if (!NextLine(content)) {
      throw DxfFault{
          line_, "the file ends after the group code " + std::to_string(group.code) + ", without a value"};
    }
    group.raw = content.ends_with('\r') ? content.substr(0, content.size() - 1) : content;
    group.value = Trimmed(content);
  } while (group.code == kCommentCode);
  if (check_ != ValueCheck::kNone) ReadNumber(group);
  return true;
}

bool GroupReader::NextLine(std::string_view& content) {
  if (position_ >= text_.size()) return false;
  const size_t end = std::min(text_.find(lineEnd_, position_), text_.size());
  content = text_.substr(position_, end - position_);
  position_ = std::min(end + 1, text_.size());
  ++line_;
  return true;
}

int GroupReader::ReadCode(std::string_view content) const {
  int code = 0;
  const auto [end, error] = std::from_chars(content.data(), content.data() + content.size(), code);
  if (error == std::errc{} && end == content.data() + content.size() && code >= 0 && code <= kHighestCode) {
    return code;
  }
  throw DxfFault{
      line_, "a group code, a whole number from 0 to 1071, should stand here, but it is " + Quoted(content)};
}

void GroupReader::ReadNumber(Group& group) const {
  if (KindOfGroup(group.code) != ValueKind::kText && group.value.size() > kLongestNumber) {
    throw DxfFault{line_, "this number has " + std::to_string(group.value.size()) + " characters"};
  }
  switch (KindOfGroup(group.code)) {
    case ValueKind::kText:
      return;
    case ValueKind::kInteger:
      if (ParseInteger(group.value, group.integer) && FitsCode(group)) return;
      throw DxfFault{line_, "group " + std::to_string(group.code) +
                                " takes a whole number, but its value is " + Quoted(group.value)};
    case ValueKind::kReal:
      break;
  }
  if (!ParseReal(group.value, group.real) || std::isnan(group.real)) {
    throw DxfFault{line_, "group " + std::to_string(group.code) + " takes a number, but its value is " +
                              Quoted(group.value)};
  }
  const double limit =
      check_ == ValueCheck::kCoordinates ? kLargestCoordinate : std::numeric_limits<double>::max();
  if (!(std::fabs(group.real) <= limit)) {
    throw DxfFault{line_, "the number " + Quoted(group.value) + " is too large for a drawing"};
  }
}

}  // namespace hdiplot
