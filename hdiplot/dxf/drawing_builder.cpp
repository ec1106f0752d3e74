#include "hdiplot/dxf/drawing_builder.h"

#include <utility>

#include "hdiplot/dxf/entity_attributes.h"
#include "hdiplot/dxf/field_codes.h"
#include "hdiplot/dxf/hatch_reader.h"
#include "hdiplot/dxf/image_reader.h"
#include "hdiplot/dxf/layout_reader.h"
#include "hdiplot/dxf/object_plane.h"
#include "hdiplot/dxf/shape_reader.h"
#include "hdiplot/dxf/table_reader.h"
#include "hdiplot/system/ascii_case.h"

namespace hdiplot {
namespace {

// Group 70 of BLOCK: the block's content is in another file.
constexpr uint64_t kBlockIsExternal = 4 | 8;

// Has the entities of blocks without a name; no other can have it.
constexpr const char* kLostBlock = "\n?";

bool IsText(std::string_view type) {
  return type == "TEXT" || type == "MTEXT" || type == "ATTRIB" || type == "ATTDEF";
}

std::string CutTypeName(std::string_view type) {
  return std::string(type) + " cut off behind " + std::to_string(kLongestText) + " bytes";
}

}  // namespace

DrawingBuilder::DrawingBuilder(FaultLog& faults)
    : faults_(faults),
      names_(decoder_, *drawing_.names),
      texts_(names_, drawing_.textStyles),
      fields_(decoder_),
      entities_(&drawing_.entities) {}

void DrawingBuilder::OnVariable(const DxfObject& variable) { ReadVariable(variable, drawing_, decoder_); }

void DrawingBuilder::OnTableEntry(const DxfObject& entry) {
  const Group* handle = entry.Find(5);
  if (entry.type == "LAYER") {
    const std::string name = NameOf(entry, decoder_);
    if (name.empty()) throw DxfFault{entry.place, "the layer has no name"};
    drawing_.layers[name] = ReadLayer(entry, decoder_);
    if (handle) layersByHandle_[HandleKey(*handle)] = name;
  } else if (entry.type == "BLOCK_RECORD") {
    const Group* name = entry.Find(2);
    if (handle && name) blocksByHandle_[HandleKey(*handle)] = UpperCase(decoder_.Decode(*name));
  } else if (entry.type == "LTYPE") {
    const std::string name = UpperCase(NameOf(entry, decoder_));
    const bool isPlaceHolder = name.empty() || name == kByLayer || name == "BYBLOCK";
    if (!isPlaceHolder) drawing_.lineTypes[name] = ReadLineType(entry);
  } else if (entry.type == "STYLE") {
    if (auto style = texts_.ReadStyle(entry)) drawing_.textStyles[style->name] = std::move(style->style);
  }
}

// The name stands in the block twice.
void DrawingBuilder::OnBlock(const DxfObject& block) {
  block_ = kLostBlock;
  entities_ = &lost_.entities;
  const Group* written = block.Find(2) ? block.Find(2) : faults_.IsStrict() ? nullptr : block.Find(3);
  const std::string name = written ? UpperCase(decoder_.Decode(*written)) : std::string();
  if (name.empty()) throw DxfFault{block.place, "the block has no name"};
  if (drawing_.blocks.contains(name)) {
    throw DxfFault{block.place, "there is a block " + Quoted(name) + " already"};
  }
  block_ = name;
  Block& added = drawing_.blocks[name];
  added.base = {block.Real(10, 0), block.Real(20, 0)};
  entities_ = &added.entities;
  if ((static_cast<uint64_t>(block.Integer(70, 0)) & kBlockIsExternal) != 0) external_.push_back(name);
}

void DrawingBuilder::OnBlockEnd() {
  FinishPolyline(false);
  block_.clear();
  entities_ = &drawing_.entities;
}

void DrawingBuilder::OnEntitiesEnd() { FinishPolyline(false); }

void DrawingBuilder::OnObject(const DxfObject& object) {
  fields_.Add(object);
  if (object.type == "LAYOUT") AddLayout(object);
  if (object.type != "IMAGEDEF") return;
  const Group* handle = object.Find(5);
  const Group* file = object.Find(1);
  if (handle && file) drawing_.imageFiles[ImageKey(*handle)] = decoder_.Decode(file->Value());
}

void DrawingBuilder::OnEntity(const DxfObject& entity) {
  const size_t before = entities_->size();
  ReadEntity(entity);
  if (entities_->size() == before || !IsOnSheet(entities_->back().attributes)) return;
  if (const Group* handle = entity.Find(5)) {
    outlines_[HandleKey(*handle)] = {entities_, entities_->size() - 1};
  }
}

void DrawingBuilder::ReadEntity(const DxfObject& entity) {
  if (entity.type == "VERTEX") {
    AddVertex(entity);
    return;
  }
  FinishPolyline(entity.type == "SEQEND");
  if (entity.type == "SEQEND") {  // or of the attributes after an INSERT
    insert_.reset();
    return;
  }
  const Attributes attributes = AttributesOf(entity, names_);
  if (block_.empty()) Count(entity.type, attributes);
  if (const ShapeReader read = FindShapeReader(entity.type)) {
    AddEntity(attributes, read(entity));
  } else if (IsText(entity.type)) {
    AddText(entity, attributes);
  } else if (entity.type == "INSERT") {
    AddInsert(entity, attributes, ReadInsert(entity, decoder_));
  } else if (entity.type == "POLYLINE") {
    polyline_.emplace(OpenPolyline{PolylineBuilder(entity), attributes});
  } else if (entity.type == "HATCH") {
    AddHatch(entity, attributes);
  } else if (entity.type == "VIEWPORT") {
    AddViewport(entity, attributes);
  } else if (entity.type == "DIMENSION") {
    AddDimension(entity, attributes);
  } else {
    CountSkipped(entity.type, attributes);
  }
}

void DrawingBuilder::AddVertex(const DxfObject& vertex) {
  if (!polyline_) throw DxfFault{vertex.place, "VERTEX without a POLYLINE"};
  polyline_->builder.AddVertex(vertex);
}

// Where one is open. Without its end it has the vertices that there are.
void DrawingBuilder::FinishPolyline(bool isEnded) {
  if (!polyline_) return;
  const OpenPolyline polyline = std::move(*polyline_);
  polyline_.reset();
  const size_t place = polyline.builder.Place();
  if (!isEnded) faults_.Report({place, "this POLYLINE has no SEQEND"});
  try {
    AddEntity(polyline.attributes, polyline.builder.Finish());
  } catch (const DxfFault& fault) {
    faults_.ReportLeftOut(fault, "POLYLINE");
  }
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
  insert.block = UpperCase(decoder_.Decode(*block));
  insert.at = {dimension.Real(12, 0), dimension.Real(22, 0)};
  AddInsert(dimension, attributes, std::move(insert));
}

void DrawingBuilder::AddInsert(const DxfObject& entity, const Attributes& attributes, InsertEntity insert) {
  insert_.reset();
  if (entity.Integer(66, 0) != 0) insert_ = attributes;
  // A block turned out of the drawing's plane cannot be expressed by scales and a rotation.
  if (entity.type == "INSERT" && PlaneOf(entity).GetKind() == Ocs::Kind::kTilted) {
    CountSkipped(entity.type, attributes);
    return;
  }
  const auto copies = static_cast<uint64_t>(insert.columns) * static_cast<uint64_t>(insert.rows);
  inserts_.push_back({names_.Hold(Place(attributes)),
                      copies,
                      entity.place,
                      entity.type == "INSERT",
                      attributes.visible,
                      {entities_, entities_->size()}});
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
    AddReadText(object, attributes, texts_.ReadMText(object), Backslash::kStartsCode);
    return;
  }
  if (object.type == "ATTRIB" && insert_) TakeFromInsert(attributes);
  AddReadText(object, attributes, texts_.ReadText(object, !block_.empty()), Backslash::kItself);
}

template <typename Text>
void DrawingBuilder::AddReadText(const DxfObject& object, Attributes attributes, std::optional<Text> text,
                                 Backslash backslash) {
  if (!text) return;
  if (CutLongText(text->text)) CountSkipped(CutTypeName(object.type), attributes);
  const std::string link = ReplaceFieldCodes(text->text, backslash);
  if (attributes.link.empty() && !link.empty()) attributes.link = names_.Hold(link);
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
  FinishInserts();
  FinishTexts();
  FinishViewports();
  if (hasUnresolved_) {
    RemoveUnresolved(drawing_.entities);
    for (auto& [name, block] : drawing_.blocks) RemoveUnresolved(block.entities);
  }
  FinishLayouts();
  drawing_.skipped = SkippedIn(kModelName);
  return std::move(drawing_);
}

std::string& DrawingBuilder::BlockOf(const Insert& insert) {
  return std::get<InsertEntity>(insert.entity.entities->at(insert.entity.index).shape).block;
}

void DrawingBuilder::FinishInserts() {
  std::set<std::string> elsewhere;
  for (const std::string& block : external_) {
    if (drawing_.blocks[block].entities.empty() && drawing_.blocks.erase(block) > 0) elsewhere.insert(block);
  }
  for (size_t i = 0; i < inserts_.size(); ++i) {
    const Insert& insert = inserts_[i];
    const std::string& block = BlockOf(insert);
    // A hidden insert still makes a circle, but shows nothing.
    if (drawing_.blocks.contains(block)) {
      graph_.AddInsert(insert.within, block, insert.visible ? insert.copies : 0, i);
      continue;
    }
    hasUnresolved_ = true;
    if (insert.visible) {
      graph_.AddSkipped(insert.within, insert.isInsert ? "INSERT" : "DIMENSION");
      const bool isFault = insert.isInsert && !elsewhere.contains(block);
      if (isFault && !faults_.IsStrict()) {
        faults_.Report({insert.place, "the block " + Quoted(block) + " of this INSERT is not there"});
      }
    }
  }
  for (const size_t i : graph_.CircularInserts()) {
    std::string& block = BlockOf(inserts_[i]);
    faults_.Report({inserts_[i].place, "the block " + Quoted(block) + " contains itself"});
    block.clear();
    hasUnresolved_ = true;
  }
}

void DrawingBuilder::FinishTexts() {
  for (const auto& [place, dictionary] : unlinkedTexts_) {
    place.entities->at(place.index).attributes.link = names_.Hold(fields_.Find(dictionary));
  }
}

void DrawingBuilder::RemoveUnresolved(Entities& entities) const {
  std::erase_if(entities, [&](const Entity& entity) {
    const auto* insert = std::get_if<InsertEntity>(&entity.shape);
    return insert && !drawing_.blocks.contains(insert->block);
  });
}

}  // namespace hdiplot
