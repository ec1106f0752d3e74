// A text DXF: a code on one line and its value on the next. Lines end in LF, CR LF or CR, which may be mixed.
// Numbers are parsed with std::from_chars: without a locale and without allocation.
#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <limits>
#include <string>

#include "hdiplot/dxf/group_source.h"

namespace hdiplot {
namespace {

constexpr int kNoCode = -1;

int ParseCode(std::string_view text) {
  int code = text.empty() ? kNoCode : 0;
  for (const char c : text) {
    if (c < '0' || c > '9' || code > kHighestCode) return kNoCode;
    code = code * 10 + (c - '0');
  }
  return code <= kHighestCode ? code : kNoCode;
}

// NaN unless all of the text is a number. std::from_chars accepts no plus sign, and reports numbers too small
// for a double as out of range, like those too large.
double ParseNumber(std::string_view text) {
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (end != text.data() + text.size() || error == std::errc::invalid_argument) {
    return std::numeric_limits<double>::quiet_NaN();
  }
  if (error == std::errc{}) return number;
  const size_t exponent = std::min(text.find_first_of("eE"), text.size() - 1);
  return text.substr(exponent + 1).starts_with('-') ? 0.0 : std::numeric_limits<double>::infinity();
}

class TextGroups : public GroupSource {
 public:
  explicit TextGroups(std::string_view text) : text_(text) {}

  Step Next(Group& group) override {
    do {
      std::string_view content;
      if (!NextLine(content, false)) return Step::kEnd;
      const std::string_view written = Trimmed(content);
      group.code = ParseCode(written);
      if (group.code == kNoCode) {
        if (written.empty() && Trimmed(text_.substr(std::min(cursor_.at, text_.size()))).empty())
          return Step::kEnd;
        return Fail(
            Step::kBadCode, cursor_.line,
            "a group code, a whole number from 0 to 1071, should stand here, but it is " + Quoted(written));
      }
      if (!NextLine(content, true)) {
        return Fail(Step::kBadCode, cursor_.line,
                    fmt::format("the file ends after the group code {}, without a value", group.code));
      }
      group.text = content.data();
      group.length = static_cast<uint32_t>(content.size());
    } while (group.code == kComment);
    group.place = cursor_.line;
    if (group.code == 0 && !IsPossibleType(group)) return FailAtType(group);
    if (IsStart(group.code)) object_ = cursor_;
    const ValueForm form = FormOf(group.code);
    if (!NeedsNumber(form)) return Step::kGroup;
    group.number = ParseNumber(group.Value());
    return IsUsable(form, group.number) ? Step::kGroup : FailAtNumber(group, group.Value());
  }

  bool SkipDamage() override {
    const size_t faultLine = cursor_.line;
    cursor_ = object_;
    std::string_view code;
    std::string_view value;
    for (Cursor before = cursor_; NextLine(code, false); before = cursor_) {
      const int number = ParseCode(Trimmed(code));
      if (!IsStart(number)) continue;
      const Cursor behind = cursor_;
      const bool starts = NextLine(value, true) && StartsObject(number, Trimmed(value));
      cursor_ = starts ? before : behind;
      if (starts) return before.line == faultLine;
    }
    return false;
  }

  [[nodiscard]] size_t Position() const override { return cursor_.at; }
  [[nodiscard]] size_t Place() const override { return cursor_.line; }
  [[nodiscard]] bool IsBinary() const override { return false; }
  [[nodiscard]] const char* PlaceName() const override { return "line"; }

 private:
  struct Cursor {
    size_t at = 0;    // of the next line
    size_t line = 0;  // the last one read, 0 before the first
  };

  // Lines are so short that a call of memchr costs more than this loop.
  bool NextLine(std::string_view& content, bool isValue) {
    if (cursor_.at >= text_.size()) return false;
    size_t end = cursor_.at;
    size_t next = 0;
    for (; end < text_.size() && next == 0; ++end) {
      if (static_cast<unsigned char>(text_[end]) > '\r') continue;
      if (text_[end] == '\n') {
        next = end + 1;
      } else if (text_[end] == '\r') {
        const bool isPair = end + 1 < text_.size() && text_[end + 1] == '\n';
        next = isPair ? end + 2 : BehindReturn(end, isValue);
      }
    }
    if (next != 0) --end;
    content = text_.substr(cursor_.at, end - cursor_.at);
    cursor_ = {next != 0 ? next : end, cursor_.line + 1};
    return true;
  }

  // Where the next line starts if the carriage return at `at` ends one, else 0. One without a line feed ends
  // a value if a group code follows; otherwise it is part of a text.
  size_t BehindReturn(size_t at, bool isValue) const {
    constexpr size_t kLongestCode = 20;  // with blanks
    const size_t behind = std::min(text_.find_first_not_of('\r', at), text_.size());
    if (behind == text_.size() || text_[behind] == '\n') return behind + 1;
    const std::string_view rest = text_.substr(at + 1, kLongestCode);
    const size_t end = rest.find_first_of("\r\n");
    const bool isCode = end != std::string_view::npos && ParseCode(Trimmed(rest.substr(0, end))) != kNoCode;
    return isCode || !isValue ? at + 1 : 0;
  }

  std::string_view text_;
  Cursor cursor_;
  Cursor object_;  // after the start of the current object
};

}  // namespace

std::unique_ptr<GroupSource> MakeTextGroups(std::string_view text) {
  return std::make_unique<TextGroups>(text);
}

}  // namespace hdiplot
