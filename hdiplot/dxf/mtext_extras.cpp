#include "hdiplot/dxf/mtext_extras.h"

#include <algorithm>
#include <optional>

#include "hdiplot/dxf/table_reader.h"

namespace hdiplot {
namespace {

constexpr int64_t kDynamic = 2;
constexpr uint64_t kMostColumns = 1000;

// The fields of both forms.
struct ColumnRecord {
  int64_t kind = 0;  // 1 static, 2 dynamic
  uint64_t count = 0;
  bool equalHeights = false;  // of dynamic columns
  bool reversed = false;
  double width = 0;
  double gutter = 0;
  double height = 0;            // of equal columns
  std::vector<double> heights;  // of others
};

ColumnRecord RecordOfEmbedded(const std::vector<Group>& embedded) {
  ColumnRecord record;
  for (const Group& group : embedded) {
    switch (group.code) {
      case 41:
        record.height = group.number;
        break;
      case 44:
        record.width = group.number;
        break;
      case 45:
        record.gutter = group.number;
        break;
      case 46:
        record.heights.push_back(group.number);
        break;
      case 71:
        record.kind = group.Integer();
        break;
      case 72:
        record.count = static_cast<uint64_t>(group.Integer());
        break;
      case 73:
        record.equalHeights = group.number != 0;
        break;
      case 74:
        record.reversed = group.number != 0;
        break;
      default:
        break;
    }
  }
  return record;
}

// What lies between the two marks, without them.
std::span<const Group> Section(std::span<const Group> data, std::string_view begin, std::string_view end) {
  const auto is = [](std::string_view mark) {
    return [mark](const Group& group) { return group.code == 1000 && group.Value() == mark; };
  };
  const auto first = std::ranges::find_if(data, is(begin));
  if (first == data.end()) return {};
  return {first + 1, std::find_if(first + 1, data.end(), is(end))};
}

// A field is a number that names it, as the group code of the embedded object, and the value.
double Field(std::span<const Group> section, int64_t name) {
  for (size_t i = 0; i + 1 < section.size(); i += 2) {
    if (section[i].code == 1070 && section[i].Integer() == name) return section[i + 1].number;
  }
  return 0;
}

// Field 50 is the number of heights, which are the rest.
std::vector<double> HeightsIn(std::span<const Group> section) {
  std::vector<double> heights;
  for (size_t i = 0; i + 1 < section.size(); i += 2) {
    if (section[i].Integer() != 50) continue;
    for (const Group& height : section.subspan(i + 2)) heights.push_back(height.number);
    break;
  }
  return heights;
}

ColumnRecord RecordOfExtended(const DxfObject& object) {
  constexpr int64_t kKind = 75, kCount = 76, kReversed = 78, kEqualHeights = 79, kWidth = 48, kGutter = 49;
  const auto data = object.ExtendedOf("ACAD");
  const auto info = Section(data, "ACAD_MTEXT_COLUMN_INFO_BEGIN", "ACAD_MTEXT_COLUMN_INFO_END");
  ColumnRecord record;
  record.kind = static_cast<int64_t>(Field(info, kKind));
  record.count = static_cast<uint64_t>(Field(info, kCount));
  record.equalHeights = Field(info, kEqualHeights) != 0;
  record.reversed = Field(info, kReversed) != 0;
  record.width = Field(info, kWidth);
  record.gutter = Field(info, kGutter);
  record.heights = HeightsIn(info);
  constexpr int64_t kHeight = 46;
  record.height =
      Field(Section(data, "ACAD_MTEXT_DEFINED_HEIGHT_BEGIN", "ACAD_MTEXT_DEFINED_HEIGHT_END"), kHeight);
  return record;
}

std::optional<MTextColumns> ColumnsOf(const DxfObject& object, double scale) {
  const ColumnRecord record =
      object.embedded.empty() ? RecordOfExtended(object) : RecordOfEmbedded(object.embedded);
  if (record.kind <= 0 || record.kind > kDynamic || !(record.width > 0)) return {};
  MTextColumns columns;
  columns.width = record.width * scale;
  columns.gutter = std::max(record.gutter, 0.0) * scale;
  columns.count = std::min(record.count, kMostColumns);
  columns.reversed = record.reversed;
  const bool hasOwnHeights = record.kind == kDynamic && !record.equalHeights && !record.heights.empty();
  columns.heights = hasOwnHeights ? record.heights : std::vector{record.height};
  for (double& height : columns.heights) height = std::max(height, 0.0) * scale;
  if (record.kind == kDynamic) columns.count = hasOwnHeights ? columns.heights.size() : 0;
  return columns;
}

}  // namespace

MTextPanel PanelOf(uint64_t flags, double boxScale) {
  constexpr uint64_t kFill = 1;
  constexpr uint64_t kPaper = 2;
  constexpr uint64_t kFrame = 16;
  constexpr double kWidest = 5;
  MTextPanel panel;
  panel.masked = (flags & (kFill | kPaper)) != 0;
  panel.framed = (flags & kFrame) != 0;
  panel.margin = std::clamp(boxScale, 1.0, kWidest) - 1;
  if ((flags & kPaper) == 0) panel.fill = EntityColor{EntityColor::Kind::kIndex, 7};
  return panel;
}

std::shared_ptr<MTextExtras> ReadMTextExtras(const DxfObject& object, double scale) {
  constexpr double kUsualBox = 1.5;
  const MTextPanel panel = PanelOf(object.Flags(90), object.Real(45, kUsualBox));
  std::optional<MTextColumns> columns;
  if (!object.embedded.empty() || !object.extended.empty()) columns = ColumnsOf(object, scale);
  if (!columns && !panel.masked && !panel.framed) return nullptr;
  auto extras = std::make_shared<MTextExtras>(MTextExtras{std::move(columns), panel});
  if (!panel.fill) return extras;
  if (const Group* color = object.Find(421)) {
    extras->panel.fill = TrueColor(*color);
  } else if (const Group* index = object.Find(63)) {
    extras->panel.fill = IndexedColor(index->Integer());
  }
  return extras;
}

std::vector<std::string_view> LinkedColumnsOf(const DxfObject& object) {
  std::vector<std::string_view> handles;
  const auto data = object.ExtendedOf("ACAD");
  for (const Group& group : Section(data, "ACAD_MTEXT_COLUMNS_BEGIN", "ACAD_MTEXT_COLUMNS_END")) {
    if (group.code == 1005) handles.push_back(group.Value());
  }
  return handles;
}

}  // namespace hdiplot
