#include "hdiplot/dxf/binary_groups.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace hdiplot {
namespace {

using namespace std::string_view_literals;

static_assert(std::endian::native == std::endian::little);

constexpr size_t kProgramLength = 7;
constexpr std::string_view kMark = " Binary DXF\r\n\x1a\0"sv;
constexpr size_t kStart = kProgramLength + kMark.size();

}  // namespace

bool IsBinaryDxf(std::string_view file) {
  return file.size() > kStart && file.substr(kProgramLength).starts_with(kMark);
}

// The first code is a small one, so that its second byte is 0; where codes have one byte, a name starts
// there.
BinaryGroups::BinaryGroups(std::string_view file)
    : file_(file),
      at_(kStart),
      object_(kStart),
      hasWideCodes_(file.size() > kStart + 1 && static_cast<unsigned char>(file[kStart + 1]) < ' ') {}

GroupSource::Step BinaryGroups::Next(Group& group) {
  do {
    if (Left() == 0) return Step::kEnd;
    group.place = at_ + 1;
    if (!TakeCode(group.code)) return Fail(Step::kBadCode, group.place, "no group starts here");
    if (!TakeValue(group)) {
      return Fail(Step::kBadCode, group.place,
                  "the file ends within the value of a group " + std::to_string(group.code));
    }
  } while (group.code == kComment);
  if (!IsPossibleStart(group)) return FailAtStart(group);
  if (group.code == 0 || group.code == 9) object_ = at_;
  if (check_ == ValueCheck::kNone || !IsNumber(FormOf(group.code))) return Step::kGroup;
  if (IsUsable(group.code, group.number, check_)) return Step::kGroup;
  return Fail(Step::kBadValue, group.place,
              NumberProblem(group.code, group.number, std::to_string(group.number)));
}

bool BinaryGroups::TakeCode(int& code) {
  constexpr int kWideCodeFollows = 255;
  const auto byte = [this](size_t i) { return static_cast<unsigned char>(file_[at_ + i]); };
  size_t length = hasWideCodes_ ? 2 : 1;
  size_t start = 0;
  if (!hasWideCodes_ && byte(0) == kWideCodeFollows) {
    start = 1;
    length = 3;
  }
  if (Left() < length) return false;
  code = length == 1 ? byte(0) : byte(start) | byte(start + 1) << 8;
  if (code > kHighestCode || FormOf(code) == ValueForm::kUnknown) return false;
  at_ += length;
  return true;
}

bool BinaryGroups::TakeValue(Group& group) {
  switch (FormOf(group.code)) {
    case ValueForm::kReal:
      return TakeNumber<double>(group);
    case ValueForm::kInt8:
      return TakeNumber<int8_t>(group);
    case ValueForm::kInt16:
      return TakeNumber<int16_t>(group);
    case ValueForm::kInt32:
      return TakeNumber<int32_t>(group);
    case ValueForm::kInt64:
      return TakeNumber<int64_t>(group);
    case ValueForm::kBytes:
      return TakeBytes(group);
    default:
      return TakeText(group);
  }
}

bool BinaryGroups::TakeText(Group& group) {
  const size_t end = file_.find('\0', at_);
  if (end == std::string_view::npos) return false;
  group.text = file_.data() + at_;
  group.length = static_cast<uint32_t>(end - at_);
  at_ = end + 1;
  return true;
}

bool BinaryGroups::TakeBytes(Group& group) {
  if (Left() == 0) return false;
  const size_t length = static_cast<unsigned char>(file_[at_]);
  if (Left() <= length) return false;
  group.text = file_.data() + at_ + 1;
  group.length = static_cast<uint32_t>(length);
  at_ += length + 1;
  return true;
}

template <typename Number>
bool BinaryGroups::TakeNumber(Group& group) {
  Number number;
  if (Left() < sizeof number) return false;
  std::memcpy(&number, file_.data() + at_, sizeof number);
  group.number = static_cast<double>(number);
  group.text = file_.data() + at_;
  group.length = 0;
  at_ += sizeof number;
  return true;
}

bool BinaryGroups::SkipDamage() {
  constexpr size_t kLongestName = 64;
  for (at_ = object_; at_ < file_.size(); ++at_) {
    if (file_[at_] != 0 && file_[at_] != 9) continue;
    const size_t start = at_;
    int code = 0;
    const bool isStart = TakeCode(code) && (code == 0 || code == 9);
    const std::string_view name = file_.substr(at_, kLongestName);
    const size_t end = name.find('\0');
    at_ = start;
    if (isStart && end != std::string_view::npos && StartsObject(code, name.substr(0, end))) break;
  }
  return false;
}

}  // namespace hdiplot
