// A LAYOUT is plot settings followed by the layout itself, with the same group codes in both: the marks of
// the subclasses, group 100, tell where the one ends.
#include "hdiplot/dxf/layout_reader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "hdiplot/geometry/curves.h"
#include "hdiplot/system/ascii_case.h"

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
      object.groups, [](const Group& group) { return group.code == 100 && group.Value() == "AcDbLayout"; });
  DxfObject part;
  part.type = object.type;
  part.place = object.place;
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

// What a viewport shows of the model.
struct View {
  Vec2 target;
  Vec3 direction{0, 0, 1};
  Vec2 center;
  double height = 0;
  double twist = 0;  // radians
  bool isPerspective = false;
  std::vector<std::string> frozenLayers;  // those told by name
};

constexpr int64_t kPerspective = 1;

View ViewOf(const DxfObject& viewport) {
  View view;
  view.target = {viewport.Real(17, 0), viewport.Real(27, 0)};
  view.direction = {viewport.Real(16, 0), viewport.Real(26, 0), viewport.Real(36, 1)};
  view.center = {viewport.Real(12, 0), viewport.Real(22, 0)};
  view.height = viewport.Real(45, 0);
  view.twist = Radians(viewport.Real(51, 0));
  view.isPerspective = (viewport.Integer(90, 0) & kPerspective) != 0;
  return view;
}

// In files up to R14 the view is a list in the extended data, in this order: target and direction as points;
// twist, height and center as numbers; flags; and at its end the names of frozen layers. The twist is in
// radians; but some programs put degrees there.
View OldViewOf(const DxfObject& viewport, const NameDecoder& names) {
  const std::span<const Group> data = viewport.ExtendedOf("ACAD");
  View view;
  if (std::ranges::find(data, "MVIEW", &Group::Value) == data.end()) return view;
  const auto nth = [data](int code, size_t index) {
    for (const Group& group : data) {
      if (group.code == code && index-- == 0) return group;
    }
    return Group{};
  };
  view.target = {nth(1010, 0).number, nth(1020, 0).number};
  view.direction = {nth(1010, 1).number, nth(1020, 1).number, nth(1030, 1).number};
  const double twist = nth(1040, 0).number;
  view.twist = std::abs(twist) > kWholeTurn ? Radians(twist) : twist;
  view.height = nth(1040, 1).number;
  view.center = {nth(1040, 2).number, nth(1040, 3).number};
  view.isPerspective = (nth(1070, 1).Integer() & kPerspective) != 0;  // behind the list's version
  for (const Group& group : data) {
    if (group.code == 1003) view.frozenLayers.push_back(names.Decode(group));
  }
  return view;
}

}  // namespace

std::string HandleKey(const Group& handle) { return UpperCase(handle.Value()); }

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

ReadViewport ViewportOf(const DxfObject& entity, bool isFirst, const NameDecoder& names) {
  constexpr int64_t kOff = 0x20000;
  constexpr double kUpright = 1e-6;
  ReadViewport read;
  const int64_t id = entity.Integer(69, 0);
  const Group* flags = entity.Find(90);
  const bool isOff = flags != nullptr ? (flags->Integer() & kOff) != 0 : entity.Integer(68, 1) == 0;
  ViewportEntity& viewport = read.viewport;
  viewport.center = {entity.Real(10, 0), entity.Real(20, 0)};
  viewport.width = entity.Real(40, 0);
  viewport.height = entity.Real(41, 0);
  const Group* clip = entity.Find(340);
  if (clip != nullptr && clip->Value() != "0") read.clipHandle = HandleKey(*clip);
  if (id == 1 || (id == 0 && isFirst) || !(viewport.width > 0) || !(viewport.height > 0)) return read;
  if (isOff) {
    read.use = ViewportUse::kOff;
    return read;
  }

  const View view = entity.Find(45) != nullptr ? ViewOf(entity) : OldViewOf(entity, names);
  viewport.scale = viewport.height / view.height;
  viewport.viewCenter = view.center;
  viewport.target = view.target;
  viewport.twist = view.twist;
  viewport.frozenLayers = view.frozenLayers;
  if (!IsScale(viewport.scale)) return read;

  const bool isPlan = view.direction.z > 0 && !view.isPerspective &&
                      std::hypot(view.direction.x, view.direction.y) <= kUpright * view.direction.z;
  read.use = isPlan ? ViewportUse::kShown : ViewportUse::kNotPlanar;
  for (const Group& group : entity.groups) {
    if (group.code == 331 || group.code == 341) read.frozenHandles.push_back(HandleKey(group));
  }
  return read;
}

}  // namespace hdiplot
