// A LAYOUT is plot settings followed by the layout itself, with the same group codes in both. The subclass
// markers (group 100) separate them.
#include "hdiplot/dxf/layout_reader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <utility>

#include "hdiplot/geometry/curves.h"

namespace hdiplot {
namespace {

constexpr double kMillimetresPerInch = 25.4;

// In millimetres. Sheets of other sizes are ignored; PDF viewers show pages of 3 to 14400 points
// (ISO 32000-1:2008, Annex C).
constexpr double kSmallestSheet = 10;
constexpr double kLargestSheet = 5080;

// Larger scales are ignored, and smaller ones than its reciprocal.
constexpr double kLargestScale = 1e12;

bool IsScale(double scale) { return scale >= 1 / kLargestScale && scale <= kLargestScale; }

// The groups of the layout itself.
std::span<const Group> LayoutPart(const DxfObject& object) {
  const auto mark = std::ranges::find_if(
      object.groups, [](const Group& group) { return group.code == 100 && group.Value() == "AcDbLayout"; });
  return {mark, object.groups.end()};
}

// The sheet as the layout is seen on it: the paper turned by the quarter turns, counter-clockwise, by which
// the plot is rotated on the paper.
std::optional<LayoutSheet> SheetOf(const DxfObject& settings) {
  LayoutSheet sheet;
  sheet.width = settings.Real(44, 0);
  sheet.height = settings.Real(45, 0);
  for (const double side : {sheet.width, sheet.height}) {
    if (!(side >= kSmallestSheet && side <= kLargestSheet)) return std::nullopt;
  }
  // Left, bottom, right, top: counter-clockwise, so that a turn of the sheet rotates the list.
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

// Group 70 of plot settings.
constexpr uint64_t kIsCentred = 4;
constexpr uint64_t kHasStandardScale = 16;
constexpr uint64_t kHasPlotStyles = 32;
constexpr uint64_t kScalesWeights = 64;
constexpr uint64_t kHasWeights = 128;
constexpr uint64_t kUsualFlags = kHasPlotStyles | kHasWeights;

// Paper units on one of the drawing, for each value of group 75: none, which is to fit; inches on a foot;
// and scales like 1:10.
constexpr std::array kStandardScales = {
    0.0,      1.0 / 1536, 1.0 / 768, 1.0 / 384, 1.0 / 192, 1.0 / 128, 1.0 / 96, 1.0 / 64, 1.0 / 48,
    1.0 / 32, 1.0 / 24,   1.0 / 16,  1.0 / 12,  1.0 / 4,   1.0 / 2,   1.0,      1.0,      1.0 / 2,
    1.0 / 4,  1.0 / 8,    1.0 / 10,  1.0 / 16,  1.0 / 20,  1.0 / 30,  1.0 / 40, 1.0 / 50, 1.0 / 100,
    2.0,      4.0,        8.0,       10.0,      100.0,     1000.0};

// Paper units on one of the drawing.
double PaperScaleOf(const DxfObject& settings) {
  const auto standard = static_cast<size_t>(std::max<int64_t>(settings.Integer(75, 0), 0));
  const bool isStandard = (settings.Flags(70) & kHasStandardScale) != 0 &&
                          standard < kStandardScales.size() && kStandardScales[standard] > 0;
  const double scale = isStandard ? kStandardScales[standard] : settings.Real(142, 1) / settings.Real(143, 1);
  return IsScale(scale) ? scale : 1;
}

double MillimetresPerUnitOf(const DxfObject& settings) {
  constexpr int64_t kInches = 0;
  const double unit = settings.Integer(72, 1) == kInches ? kMillimetresPerInch : 1;
  return PaperScaleOf(settings) * unit;
}

// The offset of what is plotted from the lower left corner of the printable area.
Vec2 OriginOf(const DxfObject& settings) {
  const Vec2 origin{settings.Real(46, 0), settings.Real(47, 0)};
  const bool isNear = std::abs(origin.x) <= kLargestSheet && std::abs(origin.y) <= kLargestSheet;
  return isNear ? origin : Vec2{};
}

Vec2 PointIn(std::span<const Group> part, int code) {
  const Group* x = FindIn(part, code);
  const Group* y = FindIn(part, code + 10);
  return {x != nullptr ? x->number : 0, y != nullptr ? y->number : 0};
}

// What is plotted, in `setup`. `part` is that of the layout itself.
void ReadArea(const DxfObject& settings, std::span<const Group> part, const TextDecoder& decoder,
              const NamedViews& views, PageSetup& setup) {
  enum : int64_t { kDisplay = 0, kExtents = 1, kLimits = 2, kView = 3, kWindow = 4, kWholeLayout = 5 };
  using Area = PageSetup::Area;
  const int64_t type = settings.Integer(74, kWholeLayout);
  if (type == kDisplay || type == kExtents) setup.area = Area::kExtents;
  Box box;
  if (type == kLimits) {
    box.Add(PointIn(part, 10));
    box.Add(PointIn(part, 11));
  } else if (type == kWindow) {
    box.Add({settings.Real(48, 0), settings.Real(49, 0)});
    box.Add({settings.Real(140, 0), settings.Real(141, 0)});
  } else if (const Group* name = settings.Find(6); type == kView && name != nullptr) {
    const auto view = views.find(decoder.DecodeFoldedName(*name));
    if (view != views.end()) box = view->second;
  }
  if (!(box.Width() > 0 && box.Height() > 0)) return;
  setup.area = Area::kBox;
  setup.box = box;
}

bool HasText(const DxfObject& settings, int code) {
  const Group* group = settings.Find(code);
  return group != nullptr && !group->Value().empty();
}

PageSetup SetupOf(const DxfObject& settings, std::span<const Group> part, const TextDecoder& decoder,
                  const NamedViews& views) {
  // Programs that know of no page setup write a layout without a plotter, a paper and flags.
  const bool isSetUp = settings.Flags(70) != 0 || HasText(settings, 2) || HasText(settings, 4);
  const uint64_t flags = isSetUp ? settings.Flags(70, kUsualFlags) : kUsualFlags;
  PageSetup setup;
  ReadArea(settings, part, decoder, views, setup);
  setup.isCentred = (flags & kIsCentred) != 0;
  setup.isFitted = (flags & kHasStandardScale) != 0 && settings.Integer(75, 0) == 0;
  // Plot styles include the weights.
  if ((flags & (kHasWeights | kHasPlotStyles)) == 0) {
    setup.weightFactor = 0;
  } else if ((flags & kScalesWeights) != 0) {
    setup.weightFactor = PaperScaleOf(settings);
  }
  const Group* sheet = settings.Find(7);
  if (sheet != nullptr && (flags & kHasPlotStyles) != 0) setup.styleSheet = decoder.DecodeName(*sheet);
  return setup;
}

constexpr uint64_t kPerspective = 1;

// What a view has beside the members of ViewportEntity, which are read into `viewport`.
struct View {
  Vec3 direction{0, 0, 1};
  double height = 0;
  bool isPerspective = false;
};

View ReadView(const DxfObject& entity, ViewportEntity& viewport) {
  viewport.target = entity.Point(17);
  viewport.viewCenter = entity.Point(12);
  viewport.twist = entity.Angle(51);
  const Vec3 direction{entity.Real(16, 0), entity.Real(26, 0), entity.Real(36, 1)};
  return {direction, entity.Real(45, 0), (entity.Flags(90) & kPerspective) != 0};
}

// In files up to R14 the view is a list in the extended data: target and direction as points; twist, height
// and centre as numbers; flags; the names of frozen layers. The twist is in radians, but some programs write
// degrees.
View ReadOldView(const DxfObject& entity, const TextDecoder& decoder, ViewportEntity& viewport) {
  const std::span<const Group> data = entity.ExtendedOf("ACAD");
  if (std::ranges::find(data, "MVIEW", &Group::Value) == data.end()) return {};
  const auto nth = [data](int code, size_t index) {
    for (const Group& group : data) {
      if (group.code == code && index-- == 0) return group.number;
    }
    return 0.0;
  };
  viewport.target = {nth(1010, 0), nth(1020, 0)};
  viewport.viewCenter = {nth(1040, 2), nth(1040, 3)};
  const double twist = nth(1040, 0);
  viewport.twist = std::abs(twist) > kWholeTurn ? Radians(twist) : twist;
  for (const Group& group : data) {
    if (group.code == 1003) viewport.frozenLayers.push_back(decoder.DecodeName(group));
  }
  const auto flags = static_cast<uint64_t>(static_cast<int64_t>(nth(1070, 1)));  // the first one is a version
  return {{nth(1010, 1), nth(1020, 1), nth(1030, 1)}, nth(1040, 1), (flags & kPerspective) != 0};
}

}  // namespace

std::optional<LayoutRecord> ReadLayout(const DxfObject& object, const TextDecoder& decoder,
                                       const NamedViews& views) {
  const std::span<const Group> part = LayoutPart(object);
  const Group* name = FindIn(part, 1);
  const Group* block = FindIn(part, 330);
  const Group* order = FindIn(part, 71);
  if (name == nullptr || block == nullptr) return std::nullopt;
  LayoutRecord record;
  record.blockHandle = HandleKey(block->Value());
  record.layout.name = decoder.DecodeName(*name);
  record.layout.order = order != nullptr ? order->Integer() : 0;
  record.layout.sheet = SheetOf(object);
  record.layout.millimetresPerUnit = MillimetresPerUnitOf(object);
  record.layout.origin = OriginOf(object);
  record.layout.setup = SetupOf(object, part, decoder, views);
  return record;
}

ViewportRecord ReadViewport(const DxfObject& entity, bool isFirst, const TextDecoder& decoder) {
  constexpr uint64_t kOff = 0x20000;
  constexpr double kUpright = 1e-6;
  ViewportRecord record;
  const int64_t id = entity.Integer(69, 0);
  const bool isOff = entity.Find(90) != nullptr ? (entity.Flags(90) & kOff) != 0 : entity.Integer(68, 1) == 0;
  ViewportEntity& viewport = record.viewport;
  viewport.center = entity.Point(10);
  viewport.width = entity.Real(40, 0);
  viewport.height = entity.Real(41, 0);
  if (entity.Text(340) != "0") record.clipHandle = HandleKey(entity.Text(340));
  if (id == 1 || (id == 0 && isFirst) || !(viewport.width > 0) || !(viewport.height > 0)) return record;
  if (isOff) {
    record.use = ViewportUse::kOff;
    return record;
  }

  const View view = entity.Find(45) ? ReadView(entity, viewport) : ReadOldView(entity, decoder, viewport);
  viewport.scale = viewport.height / view.height;
  if (!IsScale(viewport.scale)) return record;

  const bool isPlan = view.direction.z > 0 && !view.isPerspective &&
                      std::hypot(view.direction.x, view.direction.y) <= kUpright * view.direction.z;
  record.use = isPlan ? ViewportUse::kShown : ViewportUse::kNotPlanar;
  for (const Group& group : entity.groups) {
    if (group.code == 331 || group.code == 341) record.frozenHandles.push_back(HandleKey(group.Value()));
  }
  return record;
}

}  // namespace hdiplot
