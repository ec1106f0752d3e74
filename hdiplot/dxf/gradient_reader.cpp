// The groups: 460 the angle in radians, 461 the shift, 452 whether it is one colour with a tint (462), 453
// the number of colours. Each colour begins with 463 and is an index (63), a true colour (421) or both. 470
// is the name.
#include "hdiplot/dxf/gradient_reader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <utility>
#include <vector>

#include "hdiplot/system/ascii_case.h"

namespace hdiplot {
namespace {

using Form = HatchGradient::Form;

constexpr int kColorBegins = 463;

std::vector<EntityColor> ColorsOf(const DxfObject& hatch) {
  constexpr int64_t kLastIndex = 255;
  std::vector<EntityColor> colors;
  for (const Group& group : hatch.groups) {
    if (group.code == kColorBegins) {
      colors.emplace_back(EntityColor{EntityColor::Kind::kIndex, 7});
    } else if (!colors.empty() && group.code == 63 && colors.back().kind == EntityColor::Kind::kIndex &&
               group.Integer() >= 1 && group.Integer() <= kLastIndex) {
      colors.back().value = static_cast<uint32_t>(group.Integer());
    } else if (!colors.empty() && group.code == 421) {
      colors.back() = {EntityColor::Kind::kTrue, static_cast<uint32_t>(group.Integer()) & 0xFFFFFFU};
    }
  }
  return colors;
}

Form FormOf(std::string_view name) {
  constexpr std::array<std::pair<std::string_view, Form>, 4> kForms{{{"CYLINDER", Form::kCylinder},
                                                                     {"SPHERICAL", Form::kSpherical},
                                                                     {"HEMISPHERICAL", Form::kHemispherical},
                                                                     {"CURVED", Form::kCurved}}};
  const auto found =
      std::ranges::find_if(kForms, [name](const auto& form) { return EqualWithoutCase(name, form.first); });
  return found == kForms.end() ? Form::kLinear : found->second;
}

}  // namespace

std::optional<HatchGradient> ReadGradient(const DxfObject& hatch, const Ocs& plane) {
  const std::vector<EntityColor> colors = ColorsOf(hatch);
  hatch.CheckCount(hatch.Find(453), colors.size());
  if (colors.empty()) return std::nullopt;

  HatchGradient gradient;
  gradient.first = colors.front();
  gradient.last = colors.back();
  // Programs write the tinted colour as the second one, too.
  const bool isTinted = hatch.Integer(452, 0) == 1 && colors.size() == 1;
  if (isTinted) gradient.tint = std::clamp(hatch.Real(462, 0), 0.0, 1.0);
  gradient.shift = std::clamp(hatch.Real(461, 0), 0.0, 1.0);

  const Group* named = hatch.Find(470);
  std::string_view name = named != nullptr ? named->Value() : std::string_view();
  constexpr std::string_view kInverted = "INV";
  const bool isInverted =
      name.size() > kInverted.size() && EqualWithoutCase(name.substr(0, kInverted.size()), kInverted);
  if (isInverted) name.remove_prefix(kInverted.size());
  gradient.form = FormOf(name);
  gradient.inverted = isInverted;

  const Vec2 right = Direction(hatch.Real(460, 0));
  gradient.right = plane.Project(right);
  gradient.up = plane.Project(TurnedLeft(right));
  return gradient;
}

}  // namespace hdiplot
