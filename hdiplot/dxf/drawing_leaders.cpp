// The part of the builder for leaders and tolerances. A leader with an arrowhead becomes the insert of a
// block of its own.
#include <algorithm>
#include <cmath>

#include "hdiplot/dxf/arrowheads.h"
#include "hdiplot/dxf/drawing_builder.h"
#include "hdiplot/dxf/object_plane.h"
#include "hdiplot/dxf/table_reader.h"

namespace hdiplot {
namespace {

Shape LeaderShape(std::vector<Vec2> points, bool isCurved) {
  if (isCurved && points.size() > 2) {
    SplineEntity curve;
    curve.fitPoints = std::move(points);
    return curve;
  }
  PolylineEntity polyline;
  polyline.continuousPattern = true;
  for (const Vec2& point : points) polyline.vertices.push_back({point});
  return polyline;
}

// The line that goes on below a text, which starts at the last point.
void AddHookLine(const DxfObject& leader, const DimensionStyle& style, std::vector<Vec2>& points) {
  constexpr int64_t kText = 0;
  const double width = leader.Real(41, 0);
  if (leader.Integer(73, 3) != kText || leader.Integer(75, 0) == 0) return;
  if (style.textAbove == 0 || !(width > 0)) return;
  const bool isReversed = leader.Integer(74, 1) == 1;
  const Vec2 right = leader.Find(211) ? leader.Point(211) : Vec2{1, 0};
  points.push_back(points.back() + right * ((style.gap * style.scale + width) * (isReversed ? -1 : 1)));
}

}  // namespace

// The name of a block by the handle of its record; empty if it is unknown.
std::string DrawingBuilder::BlockOf(std::string_view record) const {
  const auto found = record.empty() ? blocksByHandle_.end() : blocksByHandle_.find(HandleKey(record));
  return found != blocksByHandle_.end() ? found->second : std::string();
}

DimensionStyle DrawingBuilder::DimensionStyleOf(const DxfObject& entity) {
  DimensionStyle style = dimensionVariables_;
  if (const Group* name = entity.Find(3)) {
    const auto found = dimensionStyles_.find(decoder_.DecodeFoldedName(*name));
    if (found != dimensionStyles_.end()) style = found->second;
  }
  ReadOverrides(entity, decoder_, style);
  if (!(style.scale > 0)) style.scale = 1;  // 0: as the viewport's
  style.gap = std::fabs(style.gap);
  return style;
}

// An arrow in its plane, from `tip` back along `points`, whose first one moves to the arrow's end. None on a
// first segment that is not twice as long.
void DrawingBuilder::AddArrow(const std::string& block, double size, const Attributes& own,
                              std::vector<Vec2>& points, Entities& parts) {
  constexpr double kShortest = 2;  // in sizes
  if (points.size() < 2) return;
  const Vec2 tip = points[0];
  const Vec2 back = points[1] - tip;
  if (!(size > 0) || Length(back) < kShortest * size) return;
  InsertEntity arrow;
  arrow.block = names_.Hold(block.empty() ? kFilledArrow : block);
  arrow.at = tip;
  arrow.scaleX = size;
  arrow.scaleY = size;
  arrow.rotation = std::atan2(-back.y, -back.x);
  arrows_.insert(arrow.block.Text());
  if (CutsLine(arrow.block.Text())) points[0] = tip + Unit(back) * size;
  parts.emplace_back(own, std::move(arrow));
}

void DrawingBuilder::AddLeader(const DxfObject& entity, const Attributes& attributes) {
  constexpr int64_t kCurved = 1;
  (void)entity.NeededPoint(10);
  std::vector<Vec2> points = entity.Points(10);
  entity.CheckCount(entity.Find(76), points.size());
  const DimensionStyle style = DimensionStyleOf(entity);
  AddHookLine(entity, style, points);
  const bool isCurved = entity.Integer(72, 0) == kCurved;
  Attributes own = ByBlockAttributes();
  own.lineTypeScale = attributes.lineTypeScale;
  if (style.lineColor != 0) own.color = IndexedColor(static_cast<int64_t>(style.lineColor));
  if (style.lineWeight != kLineWeightByBlock)
    own.lineWeight = static_cast<int16_t>(std::clamp(style.lineWeight, -3.0, 211.0));
  Entities& parts = AddComposite(attributes, entity.Text(5));
  if (entity.Integer(71, 1) != 0) {
    std::string arrow = BlockOf(style.leaderArrow);
    if (arrow.empty() && !style.arrowName.empty()) {
      arrow = FoldedName(style.arrowName);
      if (!drawing_.blocks.contains(arrow)) arrow.insert(0, "_");
    }
    AddArrow(arrow, style.arrowSize * style.scale, own, points, parts);
  }
  parts.emplace_front(own, LeaderShape(std::move(points), isCurved));
}

void DrawingBuilder::AddMultiLeader(const DxfObject& entity, const Attributes& attributes) {
  const MultiLeader leader = ReadMultiLeader(entity, decoder_);
  Entities& parts = AddComposite(attributes, entity.Text(5));
  Attributes own = ByBlockAttributes();
  own.lineTypeScale = attributes.lineTypeScale;
  if (leader.form != MultiLeader::Form::kNone) {
    for (const MultiLeaderBranch& branch : leader.branches) {
      for (const MultiLeaderLine& line : branch.lines) AddLineOf(leader, branch, line, own, parts);
    }
  }
  if (leader.text) {
    own.color = leader.textColor;
    MTextEntity text = *leader.text;
    if (const auto style = textStylesByHandle_.find(HandleKey(leader.textStyle));
        style != textStylesByHandle_.end()) {
      text.style = names_.Hold(style->second);
    }
    (void)ReplaceFieldCodes(text.text, Backslash::kStartsCode);
    parts.emplace_back(own, std::move(text));
  }
  if (leader.block) AddContentOf(leader, entity, attributes, parts);
}

// One line, from its arrowhead to the content.
void DrawingBuilder::AddLineOf(const MultiLeader& leader, const MultiLeaderBranch& branch,
                               const MultiLeaderLine& line, Attributes own, Entities& parts) {
  const bool isSpline = leader.form == MultiLeader::Form::kSpline;
  std::vector<Vec2> points = line.points;
  points.push_back(branch.end);
  if (branch.landing != Vec2{} && leader.hasLanding && !isSpline) {
    points.push_back(branch.end + branch.landing);
  } else {
    points.back() = branch.end + branch.landing;
  }
  own.color = line.color.kind != EntityColor::Kind::kByBlock ? line.color : leader.color;
  own.lineWeight = leader.lineWeight;
  const auto lineType = lineTypesByHandle_.find(HandleKey(leader.lineType));
  if (lineType != lineTypesByHandle_.end()) own.lineType = names_.Hold(lineType->second);
  const auto arrow = leader.arrows.find(line.index);
  AddArrow(BlockOf(arrow != leader.arrows.end() ? arrow->second : leader.arrow), leader.arrowSize, own,
           points, parts);
  parts.emplace_back(own, LeaderShape(std::move(points), isSpline));
}

// The block, and in its coordinates the attributes with their values.
void DrawingBuilder::AddContentOf(const MultiLeader& leader, const DxfObject& entity,
                                  const Attributes& attributes, Entities& parts) {
  const std::string name = BlockOf(leader.blockRecord);
  const auto block = drawing_.blocks.find(name);
  if (block == drawing_.blocks.end()) {
    CountSkipped(entity.type, attributes);
    return;
  }
  InsertEntity insert = *leader.block;
  insert.block = names_.Hold("\nparts " + std::to_string(++composites_));
  Block& content = drawing_.blocks[insert.block];
  content.base = block->second.base;
  InsertEntity whole;
  whole.block = names_.Hold(name);
  whole.at = content.base;
  content.entities.emplace_back(ByBlockAttributes(), std::move(whole));
  graph_.AddInsert(ContainerOf(attributes), name, attributes.visible ? 1 : 0);
  for (const auto& [handle, value] : leader.values) {
    const auto definition = definitions_.find(HandleKey(handle));
    if (definition == definitions_.end() || value.empty()) continue;
    TextEntity text = std::get<TextEntity>(definition->second.shape);
    text.text = value;
    content.entities.emplace_back(definition->second.attributes, std::move(text));
  }
  Attributes own = ByBlockAttributes();
  own.color = leader.blockColor;
  parts.emplace_back(own, std::move(insert));
}

// The place is the middle of the first row's left side.
void DrawingBuilder::AddTolerance(const DxfObject& entity, const Attributes& attributes) {
  const DimensionStyle style = DimensionStyleOf(entity);
  const Ocs plane = PlaneOf(entity);
  ToleranceEntity tolerance;
  tolerance.place = entity.NeededPoint(10);
  const Group* text = entity.Find(1);
  if (!text) return;
  tolerance.text = decoder_.DecodeText(text->Raw(), Backslash::kStartsCode);
  if (CutLongText(tolerance.text)) CountSkipped(entity.type, attributes);
  const Vec2 right = entity.Find(11) ? Unit(entity.Point(11)) : Vec2{1, 0};
  if (right != Vec2{}) tolerance.right = right;
  const double side = plane.GetKind() == Ocs::Kind::kMirrored ? -1 : 1;
  tolerance.up = TurnedLeft(tolerance.right) * side;
  tolerance.height = style.textHeight * style.scale;
  tolerance.gap = style.gap * style.scale;
  if (const auto found = textStylesByHandle_.find(style.textStyle); found != textStylesByHandle_.end()) {
    tolerance.style = names_.Hold(found->second);
  }
  Attributes own = attributes;
  if (style.textColor != 0 && own.color.kind == EntityColor::Kind::kByBlock) {
    own.color = IndexedColor(static_cast<int64_t>(style.textColor));
  }
  AddEntity(own, std::move(tolerance), entity.Text(5));
}

// Arrowheads without a block in the file.
void DrawingBuilder::FinishArrows() {
  for (const std::string& name : arrows_) {
    const auto [block, isNew] = drawing_.blocks.try_emplace(name);
    if (isNew) AppendArrowhead(name, block->second.entities);
  }
}

}  // namespace hdiplot
