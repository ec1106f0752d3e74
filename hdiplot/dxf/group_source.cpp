#include "hdiplot/dxf/group_source.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace hdiplot {

bool GroupSource::StartsObject(int code, std::string_view value) {
  if (code == 9 && !value.starts_with('$')) return false;
  if (code == 9) value.remove_prefix(1);
  const auto isLetter = [](char c) { return c >= 'A' && c <= 'Z'; };
  return IsStart(code) && value.size() > 2 && std::ranges::any_of(value, isLetter) &&
         std::ranges::all_of(value,
                             [&](char c) { return isLetter(c) || c == '_' || (c >= '0' && c <= '9'); });
}

bool GroupSource::IsPossibleType(const Group& group) {
  return std::ranges::any_of(group.Raw(), [](char c) { return c >= 'A'; });
}

GroupSource::Step GroupSource::FailAtType(const Group& group) {
  return Fail(Step::kBadCode, group.place,
              "the type of an object should stand here, but it is " + Quoted(group.Value()));
}

GroupSource::Step GroupSource::FailAtNumber(const Group& group, std::string_view written) {
  const bool isReal = FormOf(group.code) == ValueForm::kReal;
  if (isReal && !std::isnan(group.number)) {
    return Fail(Step::kBadValue, group.place,
                fmt::format("the number {} is too large for a drawing", Quoted(written)));
  }
  return Fail(Step::kBadValue, group.place,
              fmt::format("group {} takes a {}number, but its value is {}", group.code,
                          isReal ? "" : "whole ", Quoted(written)));
}

}  // namespace hdiplot
