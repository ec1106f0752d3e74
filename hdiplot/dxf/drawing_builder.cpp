#include "hdiplot/dxf/drawing_builder.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "hdiplot/dxf/layout_reader.h"
#include "hdiplot/dxf/mtext_extras.h"
#include "hdiplot/dxf/shape_reader.h"
#include "hdiplot/dxf/table_reader.h"

namespace hdiplot {
namespace {

// Contains the entities of blocks without a name. No block can have this one.
constexpr const char* kLostBlock = "\n?";

constexpr const char* kModelBlock = "*model_space";
constexpr const char* kOnlyLayout = "Layout1";  // of files with a paper space but no LAYOUT

HatchLoop LoopOf(const Shape& shape) {
  HatchLoop loop;
  if (const auto* polyline = std::get_if<PolylineEntity>(&shape)) loop.polyline = *polyline;
  if (const auto* arc = std::get_if<ArcEntity>(&shape)) loop.edges.emplace_back(*arc);
  if (const auto* ellipse = std::get_if<EllipseEntity>(&shape)) loop.edges.emplace_back(*ellipse);
  if (const auto* spline = std::get_if<SplineEntity>(&shape)) loop.edges.emplace_back(*spline);
  return loop;
}

}  // namespace

const DrawingBuilder::EntityType DrawingBuilder::kEntityTypes[] = {
    {"LINE", &DrawingBuilder::AddShape<ReadLine>},
    {"LWPOLYLINE", &DrawingBuilder::AddShape<ReadLwPolyline>},
    {"TEXT", &DrawingBuilder::AddText},
    {"MTEXT", &DrawingBuilder::AddMText},
    {"INSERT", &DrawingBuilder::AddInsert},
    {"ARC", &DrawingBuilder::AddShape<ReadArc>},
    {"CIRCLE", &DrawingBuilder::AddShape<ReadCircle>},
    {"POLYLINE", &DrawingBuilder::AddPolyline},
    {"VERTEX", nullptr},
    {"SEQEND", nullptr},
    {"ATTRIB", &DrawingBuilder::AddAttribute},
    {"ATTDEF", &DrawingBuilder::AddText},
    {"HATCH", &DrawingBuilder::AddHatch},
    {"SPLINE", &DrawingBuilder::AddShape<ReadSpline>},
    {"ELLIPSE", &DrawingBuilder::AddShape<ReadEllipse>},
    {"POINT", &DrawingBuilder::AddShape<ReadPoint>},
    {"SOLID", &DrawingBuilder::AddShape<ReadSolid>},
    {"TRACE", &DrawingBuilder::AddShape<ReadSolid>},
    {"3DFACE", &DrawingBuilder::AddShape<ReadFace>},
    {"LEADER", &DrawingBuilder::AddLeader},
    {"MULTILEADER", &DrawingBuilder::AddMultiLeader},
    {"TOLERANCE", &DrawingBuilder::AddTolerance},
    {"SHAPE", &DrawingBuilder::AddSymbol},
    {"IMAGE", &DrawingBuilder::AddShape<ReadImage>},
    {"WIPEOUT", &DrawingBuilder::AddShape<ReadWipeout>},
    {"VIEWPORT", &DrawingBuilder::AddViewport},
    {"DIMENSION", &DrawingBuilder::AddDimension},
    {"ARC_DIMENSION", &DrawingBuilder::AddDimension},
    {"LARGE_RADIAL_DIMENSION", &DrawingBuilder::AddDimension},
    {"ACAD_TABLE", &DrawingBuilder::AddTable},
    {"RAY", &DrawingBuilder::AddShape<ReadRay>},
    {"XLINE", &DrawingBuilder::AddShape<ReadRay>},
    {"3DLINE", &DrawingBuilder::AddShape<ReadLine>},
    {"HELIX", &DrawingBuilder::AddShape<ReadHelix>},
    {"MESH", &DrawingBuilder::AddShape<ReadMesh>},
    {"MLINE", &DrawingBuilder::AddMLine},
    {"MPOLYGON", &DrawingBuilder::AddMPolygon},
};

DrawingBuilder::DrawingBuilder(FaultLog& faults)
    : faults_(faults),
      names_(decoder_, *drawing_.names),
      texts_(names_, drawing_.textStyles),
      fields_(decoder_),
      entities_(&drawing_.entities),
      handles_(&handlesOf_[entities_]) {}

const DrawingBuilder::TypeRun& DrawingBuilder::RunOf(std::string_view type) {
  if (run_.name != type) {
    const auto found = std::ranges::find(kEntityTypes, type, &EntityType::name);
    run_ = {type, found == std::end(kEntityTypes) ? nullptr : &*found};
  }
  return run_;
}

bool DrawingBuilder::Plots(std::string_view type) { return RunOf(type).type != nullptr; }

void DrawingBuilder::OnVariable(const DxfObject& variable) {
  ReadVariable(variable, drawing_, decoder_);
  ReadDimensionVariable(variable, decoder_, dimensionVariables_);
}

void DrawingBuilder::OnTableEntry(const DxfObject& entry) {
  const std::string handle = HandleKey(entry.Text(5));
  if (entry.type == "LAYER") {
    const std::string name = decoder_.DecodeName(entry.Needed(2));
    if (name.empty()) throw DxfFault{entry.place, "the layer has no name"};
    const Layer layer = ReadLayer(entry, decoder_);
    drawing_.layers[name] = layer;
    drawing_.layers[name].plotStyle = HandleKey(entry.Text(390));  // a name in the end
    if (layer.frozen) frozenLayers_.insert(FoldedName(name));
    if (!handle.empty()) layersByHandle_[handle] = name;
    layersInOrder_.push_back(names_.Hold(name));
  } else if (entry.type == "BLOCK_RECORD") {
    const Group* name = entry.Find(2);
    if (!handle.empty() && name) blocksByHandle_[handle] = decoder_.DecodeFoldedName(*name);
  } else if (entry.type == "VIEW") {
    AddView(entry);
  } else if (entry.type == "LTYPE") {
    const std::string name = decoder_.DecodeFoldedName(entry.Needed(2));
    lineTypesInOrder_.push_back(names_.Hold(name));
    const bool isPlaceholder = name.empty() || name == kByLayer || name == kByBlock;
    if (!isPlaceholder) drawing_.lineTypes[name] = ReadLineType(entry, decoder_);
    if (!handle.empty()) lineTypesByHandle_[handle] = name;
  } else if (entry.type == "STYLE") {
    const std::string name = decoder_.DecodeFoldedName(entry.Needed(2));
    std::optional<TextStyle> style = ReadStyle(entry, decoder_);
    if (!style) shapeFiles_.insert_or_assign(handle, decoder_.Decode(entry.Text(3)));
    if (style && !name.empty()) drawing_.textStyles[name] = *std::move(style);
    if (!handle.empty()) textStylesByHandle_[handle] = name;
  } else if (entry.type == "DIMSTYLE") {
    const std::string name = decoder_.DecodeFoldedName(entry.Needed(2));
    ReadDimensionStyle(entry, decoder_, dimensionStyles_[name]);
  }
}

// The name is in groups 2 and 3.
void DrawingBuilder::OnBlock(const DxfObject& block) {
  constexpr uint64_t kIsExternal = 4 | 8;  // the content is in another file
  BeginEntities(names_.Hold(kLostBlock), lost_.entities);
  const Group* written = block.Find(2) ? block.Find(2) : faults_.IsStrict() ? nullptr : block.Find(3);
  const Name name = written ? names_.Folded(*written) : Name(&kNoName);
  if (name.empty()) throw DxfFault{block.place, "the block has no name"};
  if (drawing_.blocks.contains(name)) {
    throw DxfFault{block.place, "there is a block " + Quoted(decoder_.DecodeName(*written)) + " already"};
  }
  Block& added = drawing_.blocks[name];
  added.base = block.Point(10);
  BeginEntities(name, added.entities);
  if ((block.Flags(70) & kIsExternal) != 0) external_.push_back(name);
}

void DrawingBuilder::OnBlockEnd() {
  FinishPolyline(false);
  BeginEntities(Name(&kModelName), drawing_.entities);
}

void DrawingBuilder::BeginEntities(Name block, Entities& entities) {
  block_ = block;
  entities_ = &entities;
  handles_ = &handlesOf_[entities_];
}

void DrawingBuilder::OnEntitiesEnd() { FinishPolyline(false); }

void DrawingBuilder::OnObject(const DxfObject& object) {
  fields_.Add(object);
  clips_.Add(object);
  if (object.type == "LAYOUT") AddLayout(object);
  if (object.type == "SORTENTSTABLE") AddDrawOrder(object);
  if (object.type == "ACDBDICTIONARYWDFLT") AddPlotStyleNames(object);
  if (object.type == "RASTERVARIABLES") drawing_.framesImages = object.Integer(70, 0) == 1;
  if (object.type == "MLINESTYLE") mlineStyles_[HandleKey(object.Text(5))] = ReadMLineStyle(object, names_);
  if (object.type != "IMAGEDEF") return;
  const Group* file = object.Find(1);
  if (object.Find(5) && file) drawing_.imageFiles[HandleKey(object.Text(5))] = decoder_.Decode(file->Value());
}

void DrawingBuilder::OnEntity(const DxfObject& entity) {
  if (entity.type == "VERTEX") {
    if (!polyline_) throw DxfFault{entity.place, "VERTEX without a POLYLINE"};
    polyline_->builder.AddVertex(entity);
    return;
  }
  FinishPolyline(entity.type == "SEQEND");
  if (entity.type == "SEQEND") {  // or of the attributes after an INSERT
    insert_.reset();
    return;
  }
  Attributes attributes = ReadAttributes(entity, names_);
  attributes.plotStyle = PlotStyleOf(entity);
  const TypeRun& run = RunOf(entity.type);
  if (block_.empty()) {
    if (!run.count) run_.count = &drawing_.types[std::string(entity.type)];
    ++(attributes.paperSpace ? run.count->paper : run.count->model);
  }
  if (run.type) {
    (this->*run.type->add)(entity, attributes);
  } else if (!AddProxyGraphics(entity, attributes)) {
    CountSkipped(entity.type, attributes);
  }
}

template <auto Read>
void DrawingBuilder::AddShape(const DxfObject& entity, const Attributes& attributes) {
  AddEntity(attributes, Read(entity), entity.Text(5));
}

void DrawingBuilder::AddPolyline(const DxfObject& entity, const Attributes& attributes) {
  polyline_.emplace(OpenPolyline{PolylineBuilder(entity), attributes, entity.Text(5)});
}

// Of the open polyline, if there is one. Without its SEQEND it has the vertices so far.
void DrawingBuilder::FinishPolyline(bool isEnded) {
  if (!polyline_) return;
  const OpenPolyline polyline = *std::exchange(polyline_, std::nullopt);
  const size_t place = polyline.builder.Place();
  if (!isEnded) faults_.Report({place, "this POLYLINE has no SEQEND"});
  try {
    AddEntity(polyline.attributes, polyline.builder.Finish(), polyline.handle);
  } catch (const DxfFault& fault) {
    faults_.ReportLeftOut(fault, "POLYLINE");
  }
}

void DrawingBuilder::AddInsert(const DxfObject& entity, const Attributes& attributes) {
  InsertEntity insert = ReadInsert(entity, names_);
  insert_.reset();
  if (entity.Integer(66, 0) != 0) insert_ = OpenInsert{attributes, entity.Text(5)};
  AddInsertOf(entity, attributes, std::move(insert));
}

Entity& DrawingBuilder::AddInsertOf(const DxfObject& entity, const Attributes& attributes,
                                    InsertEntity&& insert) {
  // A hidden insert shows nothing, but may close a circle.
  const auto copies = static_cast<uint64_t>(insert.columns) * static_cast<uint64_t>(insert.rows);
  graph_.AddInsert(ContainerOf(attributes), insert.block, attributes.visible ? copies : 0);
  Entity& added = AddEntity(attributes, std::move(insert), entity.Text(5));
  if (!entity.dictionary.empty()) clippedInserts_.push_back({&added, std::string(entity.dictionary)});
  inserts_.push_back({ContainerOf(attributes), &added, entity.place, entity.Text(2), entity.type});
  return added;
}

void DrawingBuilder::AddHatch(const DxfObject& entity, const Attributes& attributes) {
  HatchEntity hatch = ReadHatch(entity);
  if (!hatch.solid && hatch.lines.empty()) {
    CountSkipped(entity.type, attributes);
    return;
  }
  AddEntity(attributes, std::move(hatch), entity.Text(5));
}

void DrawingBuilder::AddSymbol(const DxfObject& entity, const Attributes& attributes) {
  MeshEntity symbol = ReadSymbol(entity);
  if (symbol.edges.empty()) {
    CountSkipped(entity.type, attributes);
  } else {
    AddEntity(attributes, std::move(symbol), entity.Text(5));
  }
}

void DrawingBuilder::AddText(const DxfObject& entity, const Attributes& attributes) {
  if (!block_.empty() && entity.type == "ATTDEF" && entity.Find(5)) {
    if (auto definition = texts_.ReadDefinition(entity)) {
      definitions_.insert_or_assign(HandleKey(entity.Text(5)), Entity(attributes, *std::move(definition)));
    }
  }
  AddStrings(entity, attributes, texts_.ReadText(entity, !block_.empty()), Backslash::kItself);
}

void DrawingBuilder::AddAttribute(const DxfObject& entity, const Attributes& attributes) {
  Attributes own = attributes;
  if (insert_) TakeFromInsert(own);
  AddText(entity, own);
}

// Up to R2013 the further columns of a text follow as texts of their own. Where they have a content, the
// first one does not flow into them.
void DrawingBuilder::AddMText(const DxfObject& entity, const Attributes& attributes) {
  std::optional<MTextEntity> text = texts_.ReadMText(entity);
  if (!text) return;
  if (!linkedColumns_.empty()) {
    const auto linked = linkedColumns_.find(HandleKey(entity.Text(5)));
    if (linked != linkedColumns_.end()) linked->second->columns.reset();
  }
  if (text->extras && text->extras->columns) {
    for (const std::string_view handle : LinkedColumnsOf(entity)) {
      linkedColumns_[HandleKey(handle)] = text->extras;
    }
  }
  AddStrings(entity, attributes, std::move(text), Backslash::kStartsCode);
}

template <typename Text>
void DrawingBuilder::AddStrings(const DxfObject& entity, Attributes attributes, std::optional<Text>&& text,
                                Backslash backslash) {
  if (!text) return;
  if (CutLongText(text->text)) {
    CountSkipped(fmt::format("{} cut off behind {} bytes", entity.type, kLongestText), attributes);
  };
  const std::string link = ReplaceFieldCodes(text->text, backslash);
  if (attributes.link.empty() && !link.empty()) attributes.link = names_.Hold(link);
  // An attribute is drawn with its INSERT.
  const bool isOfInsert = insert_ && entity.type == "ATTRIB";
  Entity& added = AddEntity(attributes, std::move(*text), isOfInsert ? insert_->handle : entity.Text(5));
  if (attributes.link.empty() && !entity.dictionary.empty()) {
    unlinkedTexts_.push_back({&added, std::string(entity.dictionary)});
  }
}

// An attribute is an entity of its own, but shares the space, the link and the visibility of its INSERT, and
// is by block to it.
void DrawingBuilder::TakeFromInsert(Attributes& attributes) const {
  const Attributes& insert = insert_->attributes;
  attributes.paperSpace = insert.paperSpace;
  if (attributes.color.kind == EntityColor::Kind::kByBlock) attributes.color = insert.color;
  if (attributes.lineWeight == kLineWeightByBlock) attributes.lineWeight = insert.lineWeight;
  if (attributes.alpha.kind == EntityAlpha::Kind::kByBlock) attributes.alpha = insert.alpha;
  if (attributes.link.empty()) attributes.link = insert.link;
  const bool isFrozen = !frozenLayers_.empty() && frozenLayers_.contains(FoldedName(insert.layer.Text()));
  if (!insert.visible || isFrozen) attributes.visible = false;
}

void DrawingBuilder::CountSkipped(std::string_view type, const Attributes& attributes) {
  if (attributes.visible) graph_.AddSkipped(ContainerOf(attributes), TypeName(type));
}

// As BlockGraph names it.
Name DrawingBuilder::ContainerOf(const Attributes& attributes) const {
  return block_.empty() && attributes.paperSpace ? Name(&kPaperName) : block_;
}

Drawing DrawingBuilder::Finish() {
  FinishLineTypes();
  FinishArrows();
  FinishTexts();
  FinishMLines();
  FinishViewports();
  FinishBlockClips();
  FinishDimensions();
  const bool hasUnresolved = FinishInserts();
  FinishDrawOrder();
  if (hasUnresolved) {
    RemoveUnresolved(drawing_.entities);
    for (auto& [name, block] : drawing_.blocks) RemoveUnresolved(block.entities);
  }
  FinishLayouts();
  FinishPlotStyles();
  drawing_.skipped = SkippedIn(kModelName);
  return std::move(drawing_);
}

// Reports inserts of missing blocks, and those that make a block contain itself.
bool DrawingBuilder::FinishInserts() {
  std::set<std::string> elsewhere;
  for (const std::string& block : external_) {
    if (drawing_.blocks[block].entities.empty() && drawing_.blocks.erase(block) > 0) elsewhere.insert(block);
  }
  const std::set<BlockGraph::Insert> circular = graph_.CircularInserts();
  const std::set<std::string> used = graph_.InsertedBlocks();
  const auto exists = [this](const std::string& block) { return drawing_.blocks.contains(block); };
  if (circular.empty() && std::ranges::all_of(used, exists)) return false;
  for (const Insert& insert : inserts_) {
    Name& block = std::get<InsertEntity>(insert.entity->shape).block;
    const std::string written = Quoted(decoder_.Decode(insert.block));
    if (circular.contains({insert.within, block})) {
      faults_.Report({insert.place, "the block " + written + " contains itself"});
      block = Name(&kNoName);
    } else if (!exists(block) && insert.entity->attributes.visible) {
      const std::string of = insert.block.empty()        ? " without a block"
                             : elsewhere.contains(block) ? " of the external block " + written
                                                         : " of the missing block " + written;
      graph_.AddSkipped(insert.within, std::string(insert.type) + of);
      if (insert.type == "INSERT" && !elsewhere.contains(block) && !faults_.IsStrict()) {
        faults_.Report({insert.place, "the block " + written + " of this INSERT is not there"});
      }
    }
  }
  return true;
}

void DrawingBuilder::AddDrawOrder(const DxfObject& object) {
  std::optional<DrawOrder> order = ReadDrawOrder(object);
  if (order) drawOrders_.try_emplace(order->owner, std::move(*order));
}

// Moves entities: pointers to them end here.
void DrawingBuilder::FinishDrawOrder() {
  for (const auto& [owner, order] : drawOrders_) {
    const auto name = blocksByHandle_.find(owner);
    if (name == blocksByHandle_.end()) continue;
    const bool isActive = name->second == kModelBlock || name->second == kActivePaper;
    const auto block = drawing_.blocks.find(name->second);
    if (block == drawing_.blocks.end() && !isActive) continue;
    Entities& entities = isActive ? drawing_.entities : block->second.entities;
    std::vector<size_t> places;
    for (size_t i = 0; i < entities.size(); ++i) {
      const bool isOnPaper = entities[i].attributes.paperSpace;
      if (!isActive || isOnPaper == (name->second == kActivePaper)) places.push_back(i);
    }
    SortEntities(entities, handlesOf_[&entities], places, order);
  }
}

void DrawingBuilder::FinishBlockClips() {
  for (const auto& [insert, dictionary] : clippedInserts_) {
    std::get<InsertEntity>(insert->shape).clip = clips_.Find(dictionary);
  }
}

void DrawingBuilder::FinishTexts() {
  for (const auto& [text, dictionary] : unlinkedTexts_) {
    text->attributes.link = names_.Hold(fields_.Find(dictionary));
  }
}

// The entities of layouts are in blocks or, for the active one, in the section ENTITIES. Handles lead from a
// layout to its block, and from a viewport to layers and its outline.
void DrawingBuilder::AddLayout(const DxfObject& object) {
  std::optional<LayoutRecord> record = ReadLayout(object, decoder_, views_);
  if (!record) return;
  const auto block = blocksByHandle_.find(record->blockHandle);
  if (block == blocksByHandle_.end()) return;
  if (block->second == kModelBlock) {
    drawing_.modelStyleSheet = record->layout.setup.styleSheet;
    return;
  }
  record->layout.block = block->second;
  const bool isKnown =
      std::ranges::find(drawing_.layouts, block->second, &Layout::block) != drawing_.layouts.end();
  if (!isKnown) drawing_.layouts.push_back(std::move(record->layout));
}

// Whether the current entity is part of a layout.
bool DrawingBuilder::IsOnSheet(const Attributes& attributes) const {
  return block_.empty() ? attributes.paperSpace : block_.Text().starts_with(kActivePaper);
}

void DrawingBuilder::AddViewport(const DxfObject& entity, const Attributes& attributes) {
  if (!IsOnSheet(attributes)) return;
  const auto [sheet, isFirst] = shownViewports_.try_emplace(ContainerOf(attributes), 0);
  ViewportRecord record = ReadViewport(entity, isFirst, decoder_);
  if (record.use == ViewportUse::kNotPlanar) CountSkipped("VIEWPORT not seen from above", attributes);
  if (record.use == ViewportUse::kNone) return;
  record.viewport.showsModel = record.use == ViewportUse::kShown;
  if (record.viewport.showsModel) ++sheet->second;
  for (const std::string& handle : record.frozenHandles) {
    const auto layer = layersByHandle_.find(handle);
    if (layer != layersByHandle_.end()) record.viewport.frozenLayers.push_back(layer->second);
  }
  Entity& added = AddEntity(attributes, std::move(record.viewport), entity.Text(5));
  if (!record.clipHandle.empty()) clippedViewports_.push_back({&added, std::move(record.clipHandle)});
}

void DrawingBuilder::FinishViewports() {
  for (const auto& [viewport, clipHandle] : clippedViewports_) {
    const auto outline = outlines_.find(clipHandle);
    if (outline == outlines_.end()) continue;
    std::get<ViewportEntity>(viewport->shape).clip = {LoopOf(outline->second->shape)};
  }
}

void DrawingBuilder::FinishLayouts() {
  if (drawing_.layouts.empty() && hasPaper_) {
    drawing_.layouts.emplace_back();
    drawing_.layouts.back().name = kOnlyLayout;
    drawing_.layouts.back().block = kActivePaper;
  }
  std::ranges::stable_sort(drawing_.layouts, {}, &Layout::order);
  for (Layout& layout : drawing_.layouts) {
    for (const std::string& container : {layout.block, kPaperName}) {
      if (container == kPaperName && layout.block != kActivePaper) continue;
      layout.viewports += shownViewports_[container];
      for (const auto& [type, count] : SkippedIn(container)) layout.skipped[type] += count;
    }
  }
}

TypeCounts DrawingBuilder::SkippedIn(const std::string& container) const {
  TypeCounts counts = graph_.SkippedIn(container);
  std::erase_if(counts, [](const auto& entry) { return entry.second == 0; });
  return counts;
}

void DrawingBuilder::RemoveUnresolved(Entities& entities) const {
  std::erase_if(entities, [&](const Entity& entity) {
    const auto* insert = std::get_if<InsertEntity>(&entity.shape);
    return insert && !drawing_.blocks.contains(insert->block);
  });
}

}  // namespace hdiplot
