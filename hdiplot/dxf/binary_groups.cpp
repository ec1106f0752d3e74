// A binary DXF: a code of two bytes, or of one in files up to R12, followed by its value. Texts end in a zero
// byte; numbers are little-endian.
#include <fmt/format.h>

#include <bit>
#include <cstring>
#include <string>

#include "hdiplot/dxf/group_source.h"

namespace hdiplot {
namespace {

using namespace std::string_view_literals;

static_assert(std::endian::native == std::endian::little);

// The sentinel follows the name of a program.
constexpr size_t kProgramLength = 7;
constexpr std::string_view kMark = " Binary DXF\r\n\x1a\0"sv;
constexpr size_t kStart = kProgramLength + kMark.size();

class BinaryGroups : public GroupSource {
 public:
  // The first code is below 256: its second byte is 0 where codes have two bytes. With one byte, the first
  // letter of a name is there.
  explicit BinaryGroups(std::string_view file)
      : file_(file),
        hasWideCodes_(file.size() > kStart + 1 && static_cast<unsigned char>(file[kStart + 1]) < ' ') {}

  Step Next(Group& group) override {
    ValueForm form = ValueForm::kUnknown;
    do {
      if (Left() == 0) return Step::kEnd;
      group.place = at_ + 1;
      if (!TakeCode(group.code)) return Fail(Step::kBadCode, group.place, "no group starts here");
      form = FormOf(group.code);
      if (!TakeValue(form, group)) {
        return Fail(Step::kBadCode, group.place,
                    fmt::format("the file ends within the value of a group {}", group.code));
      }
    } while (group.code == kComment);
    if (group.code == 0 && !IsPossibleType(group)) return FailAtType(group);
    if (IsStart(group.code)) object_ = at_;
    if (!NeedsNumber(form) || IsUsable(form, group.number)) return Step::kGroup;
    return FailAtNumber(group, std::to_string(group.number));
  }

  bool SkipDamage() override {
    constexpr size_t kLongestName = 64;
    for (at_ = object_; at_ < file_.size(); ++at_) {
      if (!IsStart(file_[at_])) continue;
      const size_t start = at_;
      int code = 0;
      const bool isStart = TakeCode(code) && IsStart(code);
      const std::string_view name = file_.substr(at_, kLongestName);
      const size_t end = name.find('\0');
      at_ = start;
      if (isStart && end != std::string_view::npos && StartsObject(code, name.substr(0, end))) break;
    }
    return false;
  }

  [[nodiscard]] size_t Position() const override { return at_; }
  [[nodiscard]] size_t Place() const override { return at_; }
  [[nodiscard]] bool IsBinary() const override { return true; }
  [[nodiscard]] const char* PlaceName() const override { return "byte"; }

 private:
  [[nodiscard]] size_t Left() const { return file_.size() - at_; }

  // These return false, and take nothing, where the file has no such thing.
  bool TakeCode(int& code) {
    constexpr unsigned char kWideCodeFollows = 255;
    const auto first = static_cast<unsigned char>(file_[at_]);
    const size_t start = !hasWideCodes_ && first == kWideCodeFollows ? 1 : 0;
    const bool isWide = hasWideCodes_ || start != 0;
    const size_t length = start + (isWide ? 2 : 1);
    if (Left() < length) return false;
    uint16_t wide = first;
    if (isWide) std::memcpy(&wide, file_.data() + at_ + start, sizeof wide);
    code = wide;
    if (code > kHighestCode || FormOf(code) == ValueForm::kUnknown) return false;
    at_ += length;
    return true;
  }

  bool TakeValue(ValueForm form, Group& group) {
    if (form == ValueForm::kReal) return TakeNumber<double>(group);
    if (form == ValueForm::kInt8) return TakeNumber<int8_t>(group);
    if (form == ValueForm::kInt16) return TakeNumber<int16_t>(group);
    if (form == ValueForm::kInt32) return TakeNumber<int32_t>(group);
    if (form == ValueForm::kInt64) return TakeNumber<int64_t>(group);
    return form == ValueForm::kBytes ? TakeBytes(group) : TakeText(group);
  }

  bool TakeText(Group& group) {
    const size_t end = file_.find('\0', at_);
    if (end == std::string_view::npos) return false;
    group.text = file_.data() + at_;
    group.length = static_cast<uint32_t>(end - at_);
    at_ = end + 1;
    return true;
  }

  bool TakeBytes(Group& group) {
    if (Left() == 0) return false;
    const size_t length = static_cast<unsigned char>(file_[at_]);
    if (Left() <= length) return false;
    group.text = file_.data() + at_ + 1;
    group.length = static_cast<uint32_t>(length);
    at_ += length + 1;
    return true;
  }

  template <typename Number>
  bool TakeNumber(Group& group) {
    Number number;
    if (Left() < sizeof number) return false;
    std::memcpy(&number, file_.data() + at_, sizeof number);
    group.number = static_cast<double>(number);
    group.text = file_.data() + at_;
    group.length = 0;
    at_ += sizeof number;
    return true;
  }

  std::string_view file_;
  size_t at_ = kStart;
  size_t object_ = kStart;  // after the start of the current object
  bool hasWideCodes_;
};

}  // namespace

bool IsBinaryDxf(std::string_view file) {
  return file.size() > kStart && file.substr(kProgramLength).starts_with(kMark);
}

std::unique_ptr<GroupSource> MakeBinaryGroups(std::string_view file) {
  return std::make_unique<BinaryGroups>(file);
}

}  // namespace hdiplot
