// Puts the drawing together from the objects of a DXF.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "hdiplot/dxf/block_graph.h"
#include "hdiplot/dxf/field_links.h"
#include "hdiplot/dxf/name_cache.h"
#include "hdiplot/dxf/polyline_reader.h"
#include "hdiplot/dxf/text_reader.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

// Takes the objects in the order of the file. An object is good during the call only. What throws DxfFault
// has not taken the object.
class DrawingBuilder {
 public:
  // The log has to outlive the builder.
  explicit DrawingBuilder(FaultLog& faults);

  void OnVariable(const DxfObject& variable);
  void OnTableEntry(const DxfObject& entry);  // of any table; the type tells which
  void OnBlock(const DxfObject& block);       // the entities up to OnBlockEnd belong to it
  void OnBlockEnd();
  void OnEntity(const DxfObject& entity);  // also VERTEX, ATTRIB and SEQEND
  void OnEntitiesEnd();                    // the end of the ENTITIES section
  void OnObject(const DxfObject& object);  // of the section OBJECTS; numbers are read of LAYOUT only

  // The drawing, after the last object. Throws DxfFault when the log is strict.
  Drawing Finish();

 private:
  // An entity among others, which stay where they are up to the end.
  struct EntityPlace {
    Entities* entities;
    size_t index;
  };

  // An insert of a block that may not exist; known at the end only.
  struct Insert {
    Name within;  // as BlockGraph names it
    uint64_t copies;
    size_t place;   // in the file
    bool isInsert;  // or a DIMENSION
    bool visible;
    EntityPlace entity;
  };

  struct OpenPolyline {
    PolylineBuilder builder;
    Attributes attributes;
  };

  struct OpenViewport {
    EntityPlace place;
    std::string clipHandle;  // of its outline, which may follow
  };

  struct TextWithDictionary {
    EntityPlace place;
    std::string dictionary;  // its handle
  };

  void AddVertex(const DxfObject& vertex);
  void FinishPolyline(bool isEnded);
  void AddDimension(const DxfObject& dimension, const Attributes& attributes);
  void AddInsert(const DxfObject& entity, const Attributes& attributes, InsertEntity insert);
  void AddHatch(const DxfObject& object, const Attributes& attributes);
  void AddText(const DxfObject& object, Attributes attributes);
  template <typename Text>
  void AddReadText(const DxfObject& object, Attributes attributes, std::optional<Text> text,
                   Backslash backslash);
  void TakeFromInsert(Attributes& attributes) const;
  void AddEntity(const Attributes& attributes, Shape shape);
  void Count(std::string_view type, const Attributes& attributes);
  void ReadEntity(const DxfObject& entity);
  bool IsOnSheet(const Attributes& attributes) const;
  void AddLayout(const DxfObject& object);
  void AddViewport(const DxfObject& entity, const Attributes& attributes);
  static std::string& BlockOf(const Insert& insert);
  void FinishInserts();
  void FinishTexts();
  void FinishViewports();
  void FinishLayouts();
  TypeCounts SkippedIn(const std::string& place) const;
  void CountSkipped(std::string_view type, const Attributes& attributes);
  std::string Place(const Attributes& attributes) const;
  void RemoveUnresolved(Entities& entities) const;

  FaultLog& faults_;
  Drawing drawing_;
  NameDecoder decoder_;
  NameCache names_;
  TextReader texts_;
  FieldLinks fields_;
  BlockGraph graph_;
  std::vector<Insert> inserts_;
  bool hasUnresolved_ = false;                         // inserts of what is not there
  std::map<std::string, std::string> layersByHandle_;  // names, by HandleKey as the next two
  std::map<std::string, std::string> blocksByHandle_;
  std::map<std::string, EntityPlace> outlines_;  // entities of layouts
  std::vector<OpenViewport> viewports_;          // with an outline
  std::vector<TextWithDictionary> unlinkedTexts_;
  std::set<std::string> sheetsSeen_;   // where there has been a viewport, as Place names it
  std::vector<std::string> external_;  // blocks whose content is in another file
  Block lost_;                         // what stands in blocks that cannot be named
  std::string block_;                  // the one being read; empty in the model
  Entities* entities_;                 // its entities
  std::optional<OpenPolyline> polyline_;
  std::optional<Attributes> insert_;  // of the INSERT whose ATTRIBs follow
};

}  // namespace hdiplot
