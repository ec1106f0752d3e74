// A LAYOUT is plot settings followed by the layout itself, with the same group codes in both: the marks of
// the subclasses, group 100, tell where the one ends.
#include "host/hdiplot/dxf/layout_reader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <utility>

#include "host/hdiplot/ascii_case.h"

namespace hdiplot {
namespace {

constexpr double kMillimetresPerInch = 25.4;

// Sheets beyond these are no sheets, in millimetres; PDF viewers show pages of 3 to 14400 points
// (ISO 32000-1:2008, Annex C).
constexpr double kSmallestSheet = 10;
constexpr double kLargestSheet = 5080;

// Scales from one over this to this are scales.
constexpr double kLargestScale = 1e12;

bool IsScale(double scale) { return scale >= 1 / kLargestScale && scale <= kLargestScale; }

// The layout's own groups.
DxfObject LayoutPart(const DxfObject& object) {
  const auto mark = std::ranges::find_if(
      object.groups, [](const Group& group) { return group.code == 100 && group.value == "AcDbLayout"; });
  DxfObject part;
  part.type = object.type;
  part.line = object.line;
  part.groups.assign(mark, object.groups.end());
  return part;
}

// Of the sheet as the layout is seen on it. The paper's own sides come turned by so many quarter turns
// counter-clockwise as the plot is to be turned on the paper.
std::optional<LayoutSheet> SheetOf(const DxfObject& settings) {
  LayoutSheet sheet;
  sheet.width = settings.Real(44, 0);
  sheet.height = settings.Real(45, 0);
  for (const double side : {sheet.width, sheet.height}) {
    if (!(side >= kSmallestSheet && side <= kLargestSheet)) return std::nullopt;
  }
  // Left, bottom, right, top: counter-clockwise, so that a turn of the sheet is one of the list.
  std::array margins{settings.Real(40, 0), settings.Real(41, 0), settings.Real(42, 0), settings.Real(43, 0)};
  for (double& margin : margins) margin = std::clamp(margin, 0.0, kLargestSheet);
  const auto turns = static_cast<size_t>(settings.Integer(73, 0) & 3);
  std::rotate(margins.begin(), margins.begin() + static_cast<std::ptrdiff_t>(turns), margins.end());
  if (turns % 2 != 0) std::swap(sheet.width, sheet.height);
  sheet.left = margins[0];
  sheet.bottom = margins[1];
  sheet.right = margins[2];
  sheet.top = margins[3];
  if (sheet.left + sheet.right >= sheet.width || sheet.bottom + sheet.top >= sheet.height) {
    sheet.left = sheet.bottom = sheet.right = sheet.top = 0;
  }
  return sheet;
}

double MillimetresPerUnitOf(const DxfObject& settings) {
  constexpr int64_t kInches = 0;
  const double scale = settings.Real(142, 1) / settings.Real(143, 1);
  const double unit = settings.Integer(72, 1) == kInches ? kMillimetresPerInch : 1;
  return IsScale(scale) ? scale * unit : unit;
}

// Where the drawing's origin lies, from the lower left corner of what can be printed on. It is told for plots
// of the layout itself; other plots are of a part of it.
Vec2 OriginOf(const DxfObject& settings) {
  constexpr int64_t kWholeLayout = 5;
  const Vec2 origin{settings.Real(46, 0), settings.Real(47, 0)};
  const bool isNear = std::abs(origin.x) <= kLargestSheet && std::abs(origin.y) <= kLargestSheet;
  return settings.Integer(74, kWholeLayout) == kWholeLayout && isNear ? origin : Vec2{};
}

}  // namespace

std::string HandleKey(const Group& handle) { return UpperCase(handle.value); }

std::optional<ReadLayout> LayoutOf(const DxfObject& object, const NameDecoder& names) {
  const DxfObject part = LayoutPart(object);
  const Group* name = part.Find(1);
  const Group* block = part.Find(330);
  if (name == nullptr || block == nullptr) return std::nullopt;
  ReadLayout read;
  read.blockHandle = HandleKey(*block);
  read.layout.name = names.Decode(*name);
  read.layout.order = part.Integer(71, 0);
  read.layout.sheet = SheetOf(object);
  read.layout.millimetresPerUnit = MillimetresPerUnitOf(object);
  read.layout.origin = OriginOf(object);
  return read;
}

ReadViewport ViewportOf(const DxfObject& entity, bool isFirst) {
  constexpr int64_t kPerspective = 1;
  constexpr int64_t kOff = 0x20000;
  constexpr double kUpright = 1e-6;
  ReadViewport read;
  const int64_t id = entity.Integer(69, 0);
  const Group* flags = entity.Find(90);
  const bool isOff = flags != nullptr ? (flags->integer & kOff) != 0 : entity.Integer(68, 1) == 0;
  if (id == 1 || (id == 0 && isFirst) || isOff) return read;

  ViewportEntity& viewport = read.viewport;
  viewport.center = {entity.Real(10, 0), entity.Real(20, 0)};
  viewport.width = entity.Real(40, 0);
  viewport.height = entity.Real(41, 0);
  viewport.scale = viewport.height / entity.Real(45, 0);
  viewport.viewCenter = {entity.Real(12, 0), entity.Real(22, 0)};
  viewport.target = {entity.Real(17, 0), entity.Real(27, 0)};
  viewport.twist = entity.Real(51, 0) * std::numbers::pi / 180;
  if (!(viewport.width > 0) || !(viewport.height > 0) || !IsScale(viewport.scale)) return read;

  const double x = entity.Real(16, 0);
  const double y = entity.Real(26, 0);
  const double z = entity.Real(36, 1);
  const bool isPerspective = flags != nullptr && (flags->integer & kPerspective) != 0;
  const bool isPlan = z > 0 && std::hypot(x, y) <= kUpright * z && !isPerspective;
  read.use = isPlan ? ViewportUse::kShown : ViewportUse::kNotPlanar;
  for (const Group& group : entity.groups) {
    if (group.code == 331 || group.code == 341) read.frozenHandles.push_back(HandleKey(group));
  }
  const Group* clip = entity.Find(340);
  if (clip != nullptr && clip->value != "0") read.clipHandle = HandleKey(*clip);
  return read;
}

}  // namespace hdiplot
