#include "host/hdiplot/dxf/drawing_builder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "host/hdiplot/ascii_case.h"
#include "host/hdiplot/dxf/entity_attributes.h"
#include "host/hdiplot/dxf/field_codes.h"
#include "host/hdiplot/dxf/hatch_reader.h"
#include "host/hdiplot/dxf/image_reader.h"
#include "host/hdiplot/dxf/layout_reader.h"

namespace hdiplot {
namespace {

// Group 70 of BLOCK: the block's content is in another file.
constexpr unsigned kBlockIsExternal = 4 | 8;

constexpr double kSurveyFoot = 1200000.0 / 3937;

// Millimetres for each value of $INSUNITS: none, inches, feet, miles, millimetres, centimetres, metres,
// kilometres, microinches, mils, yards, angstroms, nanometres, microns, decimetres, decametres, hectometres,
// gigametres, astronomical units, light years, parsecs, and the US survey foot, inch, yard and mile.
constexpr std::array kMillimetresPerUnit = {
    1.0,
    25.4,
    304.8,
    1609344.0,
    1.0,
    10.0,
    1000.0,
    1e6,
    25.4e-6,
    25.4e-3,
    914.4,
    1e-7,
    1e-6,
    1e-3,
    100.0,
    1e4,
    1e5,
    1e12,
    1.495978707e14,
    9.4607304725808e18,
    3.0856775814913673e19,
    kSurveyFoot,
    kSurveyFoot / 12,
    kSurveyFoot * 3,
    kSurveyFoot * 5280,
};

// Scales beyond this are no scales; the drawing does without. The header holds other numbers of any size.
constexpr double kLargestScale = 1e12;

bool IsText(std::string_view type) {
  return type == "TEXT" || type == "MTEXT" || type == "ATTRIB" || type == "ATTDEF";
}

std::string CutTypeName(std::string_view type) {
  return std::string(type) + " cut off behind " + std::to_string(kLongestText) + " bytes";
}

}  // namespace

DrawingBuilder::DrawingBuilder()
    : adapter_(names_), texts_(names_, drawing_.textStyles), fields_(names_), entities_(&drawing_.entities) {}

void DrawingBuilder::OnVariable(const DxfObject& variable) {
  if (variable.type == "$ACADVER") {
    names_.SetVersion(adapter_.ReadVariable(variable).text);
  } else if (variable.type == "$DWGCODEPAGE") {
    names_.SetCodePage(adapter_.ReadVariable(variable).text);
  } else if (variable.type == "$LTSCALE") {
    const double scale = adapter_.ReadVariable(variable).real;
    if (scale > 0 && scale <= kLargestScale) drawing_.lineTypeScale = scale;
  } else if (variable.type == "$PSLTSCALE") {
    drawing_.paperLineTypes = adapter_.ReadVariable(variable).integer != 0;
  } else if (variable.type == "$PDMODE") {
    drawing_.pointMode = adapter_.ReadVariable(variable).integer;
  } else if (variable.type == "$PDSIZE") {
    const double size = adapter_.ReadVariable(variable).real;
    if (std::fabs(size) <= kLargestScale) drawing_.pointSize = size;
  } else if (variable.type == "$INSUNITS") {
    const auto unit = static_cast<size_t>(adapter_.ReadVariable(variable).integer);
    if (unit < kMillimetresPerUnit.size()) drawing_.millimetresPerUnit = kMillimetresPerUnit[unit];
  }
}

void DrawingBuilder::OnTableEntry(const DxfObject& entry) {
  if (entry.type == "LAYER") {
    auto [name, layer] = adapter_.ReadLayer(entry);
    if (const Group* handle = entry.Find(5)) layersByHandle_[HandleKey(*handle)] = name;
    drawing_.layers[name] = std::move(layer);
  } else if (entry.type == "BLOCK_RECORD") {
    const Group* handle = entry.Find(5);
    const Group* name = entry.Find(2);
    if (handle && name) blocksByHandle_[HandleKey(*handle)] = UpperCase(names_.Decode(*name));
  } else if (entry.type == "LTYPE") {
    if (auto lineType = adapter_.ReadLineType(entry)) {
      drawing_.lineTypes[lineType->name] = std::move(lineType->lineType);
    }
  } else if (entry.type == "STYLE") {
    if (auto style = texts_.ReadStyle(entry)) drawing_.textStyles[style->name] = std::move(style->style);
  }
}

void DrawingBuilder::OnBlock(const DxfObject& block) {
  const DxflibAdapter::BlockHead head = adapter_.ReadBlock(block);
  block_ = head.name;
  if (drawing_.blocks.contains(block_)) {
    throw DxfFault{block.line, "there is a block " + Quoted(block_) + " already"};
  }
  Block& added = drawing_.blocks[block_];
  added.base = head.base;
  entities_ = &added.entities;
  if ((head.flags & kBlockIsExternal) != 0) external_.push_back(block_);
}

void DrawingBuilder::OnBlockEnd() {
  CheckNoPolylineOpen();
  block_.clear();
  entities_ = &drawing_.entities;
}

void DrawingBuilder::OnEntitiesEnd() { CheckNoPolylineOpen(); }

void DrawingBuilder::OnObject(const DxfObject& object) {
  fields_.Add(object);
  if (object.type == "LAYOUT") AddLayout(object);
  if (object.type != "IMAGEDEF") return;
  const Group* handle = object.Find(5);
  const Group* file = object.Find(1);
  if (handle && file) drawing_.imageFiles[ImageKey(*handle)] = names_.Decode(file->value);
}

void DrawingBuilder::OnEntity(const DxfObject& entity) {
  const size_t before = entities_->size();
  ReadEntity(entity);
  const Group* handle = entity.Find(5);
  if (!handle || entities_->size() == before) return;
  if (IsOnSheet(entities_->back().attributes)) {
    outlines_[HandleKey(*handle)] = {entities_, before};
  }
}

void DrawingBuilder::ReadEntity(const DxfObject& entity) {
  if (polyline_ || entity.type == "VERTEX") {
    AddPartOfPolyline(entity);
    return;
  }
  if (entity.type == "SEQEND") {  // of the attributes after an INSERT
    insert_.reset();
    return;
  }
  const Attributes attributes = AttributesOf(entity, names_);
  if (block_.empty()) Count(entity.type, attributes);
  if (entity.type == "POLYLINE") {
    polyline_ = OpenPolyline{PolylineBuilder(entity), attributes};
  } else if (entity.type == "LWPOLYLINE") {
    AddEntity(attributes, ReadLwPolyline(entity));
  } else if (entity.type == "HATCH") {
    AddHatch(entity, attributes);
  } else if (IsText(entity.type)) {
    AddText(entity, attributes);
  } else if (entity.type == "IMAGE") {
    AddEntity(attributes, ReadImage(entity));
  } else if (entity.type == "WIPEOUT") {
    AddEntity(attributes, ReadWipeout(entity));
  } else if (entity.type == "VIEWPORT") {
    AddViewport(entity, attributes);
  } else if (entity.type == "DIMENSION") {
    AddDimension(entity, attributes);
  } else if (!DxflibAdapter::ReadsShape(entity.type)) {
    CountSkipped(entity.type, attributes);
  } else {
    Shape shape = adapter_.ReadShape(entity);
    if (auto* insert = std::get_if<InsertEntity>(&shape)) {
      AddInsert(entity, attributes, std::move(*insert));
    } else {
      AddEntity(attributes, std::move(shape));
    }
  }
}

void DrawingBuilder::AddPartOfPolyline(const DxfObject& object) {
  if (!polyline_) throw DxfFault{object.line, "VERTEX without a POLYLINE"};
  if (object.type == "VERTEX") {
    polyline_->builder.AddVertex(object);
  } else if (object.type == "SEQEND") {
    AddEntity(polyline_->attributes, polyline_->builder.Finish());
    polyline_.reset();
  } else {
    CheckNoPolylineOpen();
  }
}

void DrawingBuilder::CheckNoPolylineOpen() const {
  if (polyline_) throw DxfFault{polyline_->builder.Line(), "this POLYLINE has no SEQEND"};
}

// A dimension's drawn form is an anonymous block, in the drawing's coordinates; group 12 moves it where one
// dimension has been copied from another.
void DrawingBuilder::AddDimension(const DxfObject& dimension, const Attributes& attributes) {
  const Group* block = dimension.Find(2);
  if (!block) {
    CountSkipped(dimension.type, attributes);
    return;
  }
  InsertEntity insert;
  insert.block = UpperCase(names_.Decode(*block));
  insert.at = {dimension.Real(12, 0), dimension.Real(22, 0)};
  AddInsert(dimension, attributes, std::move(insert));
}

void DrawingBuilder::AddInsert(const DxfObject& entity, const Attributes& attributes, InsertEntity insert) {
  insert_.reset();
  if (entity.Integer(66, 0) != 0) insert_ = attributes;
  // A block turned out of the drawing's plane cannot be expressed by scales and a rotation.
  if (entity.type == "INSERT" && Ocs::Of(entity).GetKind() == Ocs::Kind::kTilted) {
    CountSkipped(entity.type, attributes);
    return;
  }
  const auto copies = static_cast<uint64_t>(insert.columns) * static_cast<uint64_t>(insert.rows);
  inserts_.push_back(
      {Place(attributes), insert.block, std::string(entity.type), copies, entity.line, attributes.visible});
  AddEntity(attributes, std::move(insert));
}

void DrawingBuilder::AddHatch(const DxfObject& object, const Attributes& attributes) {
  HatchEntity hatch = ReadHatch(object);
  if (!hatch.solid && hatch.lines.empty()) {
    CountSkipped(object.type, attributes);
    return;
  }
  AddEntity(attributes, std::move(hatch));
}

void DrawingBuilder::AddText(const DxfObject& object, Attributes attributes) {
  if (object.type == "MTEXT") {
    AddReadText(object, std::move(attributes), texts_.ReadMText(object), Backslash::kStartsCode);
    return;
  }
  if (object.type == "ATTRIB" && insert_) TakeFromInsert(attributes);
  AddReadText(object, std::move(attributes), texts_.ReadText(object, !block_.empty()), Backslash::kItself);
}

template <typename Text>
void DrawingBuilder::AddReadText(const DxfObject& object, Attributes attributes, std::optional<Text> text,
                                 Backslash backslash) {
  if (!text) return;
  if (CutLongText(text->text)) CountSkipped(CutTypeName(object.type), attributes);
  const std::string link = ReplaceFieldCodes(text->text, backslash);
  if (attributes.link.empty()) attributes.link = link;
  if (attributes.link.empty() && !object.dictionary.empty()) {
    unlinkedTexts_.push_back({{entities_, entities_->size()}, std::string(object.dictionary)});
  }
  AddEntity(attributes, std::move(*text));
}

// An attribute is an entity of its own, but shares its INSERT's space and link, comes and goes with it, and
// has it for its block.
void DrawingBuilder::TakeFromInsert(Attributes& attributes) const {
  attributes.paperSpace = insert_->paperSpace;
  if (attributes.color.kind == EntityColor::Kind::kByBlock) attributes.color = insert_->color;
  if (attributes.lineWeight == kLineWeightByBlock) attributes.lineWeight = insert_->lineWeight;
  if (attributes.alpha.kind == EntityAlpha::Kind::kByBlock) attributes.alpha = insert_->alpha;
  if (attributes.link.empty()) attributes.link = insert_->link;
  const auto layer = drawing_.layers.find(insert_->layer);
  const bool frozen = layer != drawing_.layers.end() && layer->second.frozen;
  if (!insert_->visible || frozen) attributes.visible = false;
}

void DrawingBuilder::AddEntity(const Attributes& attributes, Shape shape) {
  entities_->push_back({attributes, std::move(shape)});
}

void DrawingBuilder::Count(std::string_view type, const Attributes& attributes) {
  auto found = drawing_.types.find(type);
  if (found == drawing_.types.end()) found = drawing_.types.emplace(type, EntityCount{}).first;
  ++(attributes.paperSpace ? found->second.paper : found->second.model);
}

void DrawingBuilder::CountSkipped(std::string_view type, const Attributes& attributes) {
  if (attributes.visible) graph_.AddSkipped(Place(attributes), TypeName(type));
}

// What stands in a block belongs wherever the block is inserted.
std::string DrawingBuilder::Place(const Attributes& attributes) const {
  if (!block_.empty()) return block_;
  return attributes.paperSpace ? kPaperName : kModelName;
}

Drawing DrawingBuilder::Finish() {
  for (const std::string& block : external_) {
    if (drawing_.blocks[block].entities.empty()) drawing_.blocks.erase(block);
  }
  for (const Insert& insert : inserts_) {
    const bool resolved = drawing_.blocks.contains(insert.block);
    if (!resolved && insert.visible) graph_.AddSkipped(insert.within, insert.type);
    // A hidden insert still makes a circle, but shows nothing.
    if (resolved)
      graph_.AddInsert(insert.within, insert.block, insert.visible ? insert.copies : 0, insert.line);
  }
  graph_.CheckForCircles();
  FinishTexts();
  FinishViewports();
  RemoveUnresolved(drawing_.entities);
  for (auto& [name, block] : drawing_.blocks) RemoveUnresolved(block.entities);
  FinishLayouts();
  drawing_.skipped = SkippedIn(kModelName);
  return std::move(drawing_);
}

void DrawingBuilder::FinishTexts() {
  for (const auto& [place, dictionary] : unlinkedTexts_) {
    place.entities->at(place.index).attributes.link = fields_.Find(dictionary);
  }
}

void DrawingBuilder::RemoveUnresolved(std::vector<Entity>& entities) const {
  std::erase_if(entities, [&](const Entity& entity) {
    const auto* insert = std::get_if<InsertEntity>(&entity.shape);
    return insert && !drawing_.blocks.contains(insert->block);
  });
}

}  // namespace hdiplot
