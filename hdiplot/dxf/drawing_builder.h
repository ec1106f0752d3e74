// Assembles the drawing from the objects of a DXF.
#pragma once

#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "hdiplot/dxf/block_clips.h"
#include "hdiplot/dxf/block_graph.h"
#include "hdiplot/dxf/dimension_block.h"
#include "hdiplot/dxf/draw_order.h"
#include "hdiplot/dxf/field_links.h"
#include "hdiplot/dxf/layout_reader.h"
#include "hdiplot/dxf/mline_reader.h"
#include "hdiplot/dxf/multileader_reader.h"
#include "hdiplot/dxf/polyline_reader.h"
#include "hdiplot/dxf/text_decoder.h"
#include "hdiplot/dxf/text_reader.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

// Takes the objects in the order of the file, which has to outlive the builder. An operation that throws
// DxfFault has not taken its object.
class DrawingBuilder {
 public:
  // The log has to outlive the builder.
  explicit DrawingBuilder(FaultLog& faults);

  void OnVariable(const DxfObject& variable);
  void OnTableEntry(const DxfObject& entry);  // of any table, which follows from the type
  void OnBlock(const DxfObject& block);       // the entities up to OnBlockEnd belong to it
  void OnBlockEnd();
  void OnEntity(const DxfObject& entity);  // also VERTEX, ATTRIB and SEQEND
  void OnEntitiesEnd();                    // the end of the ENTITIES section
  void OnObject(const DxfObject& object);  // of the section OBJECTS; most come without their numbers

  // Whether entities of that type are plotted, or part of one that is.
  [[nodiscard]] bool Plots(std::string_view type);

  // The drawing, after the last object. Throws DxfFault when the log is strict.
  [[nodiscard]] Drawing Finish();

 private:
  using AddEntityOfType = void (DrawingBuilder::*)(const DxfObject&, const Attributes&);
  struct EntityType {
    std::string_view name;
    AddEntityOfType add;  // null: part of another entity
  };
  static const EntityType kEntityTypes[];

  // Entities come in runs of one type, which is looked up once.
  struct TypeRun {
    std::string_view name;
    const EntityType* type = nullptr;  // null: not plotted
    EntityCount* count = nullptr;      // null: not counted yet
  };

  // An INSERT, or another entity that is drawn through a block; which may be missing.
  struct Insert {
    Name within;  // as BlockGraph names it
    Entity* entity;
    size_t place;            // as in DxfFault
    std::string_view block;  // the name in the file; empty: none
    std::string_view type;
  };

  // An entity whose block was not there when it was read.
  struct MeasuredDimension {
    Entity* entity;
    Dimension dimension;
  };

  struct OpenPolyline {
    PolylineBuilder builder;
    Attributes attributes;
    std::string_view handle;
  };

  // An INSERT whose ATTRIBs follow.
  struct OpenInsert {
    Attributes attributes;
    std::string_view handle;
  };

  struct PendingMLine {  // until all styles are known
    MLine line;
    Attributes attributes;
    Entities* parts;
  };

  // A viewport, a text or an insert, and the handle of its outline or its dictionary, which may follow.
  struct Reference {
    Entity* entity;
    std::string handle;
  };

  const TypeRun& RunOf(std::string_view type);

  template <auto Read>
  void AddShape(const DxfObject& entity, const Attributes& attributes);
  void AddText(const DxfObject& entity, const Attributes& attributes);
  void AddAttribute(const DxfObject& entity, const Attributes& attributes);
  void AddMText(const DxfObject& entity, const Attributes& attributes);
  void AddInsert(const DxfObject& entity, const Attributes& attributes);
  void AddDimension(const DxfObject& entity, const Attributes& attributes);
  void AddTable(const DxfObject& entity, const Attributes& attributes);
  void AddPolyline(const DxfObject& entity, const Attributes& attributes);
  void AddHatch(const DxfObject& entity, const Attributes& attributes);
  void AddViewport(const DxfObject& entity, const Attributes& attributes);
  void AddMLine(const DxfObject& entity, const Attributes& attributes);
  void AddMPolygon(const DxfObject& entity, const Attributes& attributes);
  void AddLeader(const DxfObject& entity, const Attributes& attributes);
  void AddMultiLeader(const DxfObject& entity, const Attributes& attributes);
  void AddTolerance(const DxfObject& entity, const Attributes& attributes);
  void AddSymbol(const DxfObject& entity, const Attributes& attributes);

  template <typename AnyShape>
  Entity& AddEntity(const Attributes& attributes, AnyShape&& shape, std::string_view handle) {
    Entity& entity = entities_->emplace_back(attributes, std::forward<AnyShape>(shape));
    handles_->push_back(HandleNumber(handle));
    if (block_.empty() && attributes.paperSpace) hasPaper_ = true;
    if (IsOnSheet(attributes) && !handle.empty()) outlines_[HandleKey(handle)] = &entity;
    return entity;
  }
  Entity& AddInsertOf(const DxfObject& entity, const Attributes& attributes, InsertEntity&& insert);
  // Adds the entity as its proxy graphics show it. False when it has none that can be used.
  bool AddProxyGraphics(const DxfObject& entity, const Attributes& attributes);
  // Adds an entity that is made of others. Returns the block for these, in which by block means the entity.
  Entities& AddComposite(const Attributes& attributes, std::string_view handle);
  [[nodiscard]] std::string BlockOf(std::string_view record) const;
  [[nodiscard]] DimensionStyle DimensionStyleOf(const DxfObject& entity);
  void AddArrow(const std::string& block, double size, const Attributes& own, std::vector<Vec2>& points,
                Entities& parts);
  void AddLineOf(const MultiLeader& leader, const MultiLeaderBranch& branch, const MultiLeaderLine& line,
                 Attributes own, Entities& parts);
  void AddContentOf(const MultiLeader& leader, const DxfObject& entity, const Attributes& attributes,
                    Entities& parts);
  template <typename Text>
  void AddStrings(const DxfObject& entity, Attributes attributes, std::optional<Text>&& text,
                  Backslash backslash);
  void AddLayout(const DxfObject& object);
  void AddDrawOrder(const DxfObject& object);
  void AddView(const DxfObject& entry);
  void AddPlotStyleNames(const DxfObject& dictionary);
  // The value for Attributes::plotStyle.
  [[nodiscard]] uint16_t PlotStyleOf(const DxfObject& entity);
  void FinishPlotStyles();
  void FinishPolyline(bool isEnded);
  void TakeFromInsert(Attributes& attributes) const;

  void CountSkipped(std::string_view type, const Attributes& attributes);
  [[nodiscard]] Name ContainerOf(const Attributes& attributes) const;
  [[nodiscard]] bool IsOnSheet(const Attributes& attributes) const;
  [[nodiscard]] TypeCounts SkippedIn(const std::string& container) const;

  void BeginEntities(Name block, Entities& entities);

  void FinishDimensions();
  [[nodiscard]] DimensionParts PartsOf(const DimensionStyle& style);
  [[nodiscard]] Name ArrowOf(const std::string& handle);
  // Returns whether there are inserts to be removed.
  [[nodiscard]] bool FinishInserts();
  void FinishBlockClips();
  void FinishDrawOrder();
  void FinishLineTypes();
  [[nodiscard]] bool IsUsed(const std::string& lineType) const;
  void FinishArrows();
  void FinishTexts();
  void FinishMLines();
  void FinishViewports();
  void FinishLayouts();
  void RemoveUnresolved(Entities& entities) const;

  FaultLog& faults_;
  Drawing drawing_;
  TextDecoder decoder_;
  NameCache names_;
  TextReader texts_;
  FieldLinks fields_;
  BlockClips clips_;
  BlockGraph graph_;
  TypeRun run_;
  std::deque<Insert> inserts_;
  DimensionStyle dimensionVariables_;                      // of the header
  std::map<std::string, DimensionStyle> dimensionStyles_;  // by folded name
  std::deque<MeasuredDimension> dimensions_;
  bool hasPaper_ = false;                              // entities of paper space outside of blocks
  std::set<std::string> frozenLayers_;                 // folded names
  std::map<std::string, std::string> layersByHandle_;  // names, by HandleKey as the next five
  std::map<std::string, std::string> blocksByHandle_;
  std::map<std::string, std::string> textStylesByHandle_;
  std::map<std::string, std::string> shapeFiles_;
  std::map<std::string, std::string> lineTypesByHandle_;
  std::map<std::string, Entity*> outlines_;  // entities of layouts
  std::vector<Reference> clippedViewports_;
  std::vector<Reference> unlinkedTexts_;
  std::vector<Reference> clippedInserts_;          // or those with another dictionary
  std::map<std::string, MLineStyle> mlineStyles_;  // by HandleKey
  std::vector<PendingMLine> mlines_;
  size_t composites_ = 0;
  NamedViews views_;
  std::map<std::string, uint16_t> plotStyles_;             // of entities, by HandleKey, as the next
  std::map<std::string, std::string> plotStylesByHandle_;  // folded names
  std::vector<Name> layersInOrder_;
  std::vector<Name> lineTypesInOrder_;                                 // folded, as the table has them
  std::map<std::string, Entity> definitions_;                          // texts of attributes in blocks
  std::set<std::string> arrows_;                                       // blocks of arrowheads that are used
  std::map<std::string, std::shared_ptr<MTextExtras>> linkedColumns_;  // of the first one, by handle
  std::map<std::string, uint64_t> shownViewports_;  // by container, of those with any viewport
  std::vector<std::string> external_;               // blocks whose content is in another file
  Block lost_;                                      // the content of blocks without a valid name
  Name block_{&kModelName};                         // the current one; empty in the model
  Entities* entities_;                              // its entities
  // Numbers of the handles of all entities, until they are sorted.
  std::unordered_map<const Entities*, std::vector<uint64_t>> handlesOf_;
  std::vector<uint64_t>* handles_;               // of `entities_`
  std::map<std::string, DrawOrder> drawOrders_;  // by owner
  std::optional<OpenPolyline> polyline_;
  std::optional<OpenInsert> insert_;
};

}  // namespace hdiplot
