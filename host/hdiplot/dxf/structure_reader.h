// Walks through the sections, tables and blocks of a DXF, checks that they are properly nested, and hands
// over what stands in them.
#pragma once

#include <string>
#include <string_view>

#include "host/hdiplot/dxf/dxf_object.h"
#include "host/hdiplot/dxf/group_reader.h"

namespace hdiplot {

// Receives the objects in the order of the file. An object is good during the call only. Everything may throw
// DxfFault.
class DxfVisitor {
 public:
  virtual ~DxfVisitor() = default;
  virtual void OnVariable(const DxfObject& variable) = 0;
  virtual void OnTableEntry(const DxfObject& entry) = 0;  // of any table; the type tells which
  virtual void OnBlock(const DxfObject& block) = 0;       // the entities up to OnBlockEnd belong to it
  virtual void OnBlockEnd() = 0;
  virtual void OnEntity(const DxfObject& entity) = 0;  // also VERTEX, ATTRIB and SEQEND
  virtual void OnEntitiesEnd() = 0;                    // the end of the ENTITIES section
  virtual void OnObject(
      const DxfObject& object) = 0;  // of the section OBJECTS; numbers are read of LAYOUT only
};

class StructureReader {
 public:
  StructureReader(std::string_view text, DxfVisitor& visitor);

  // Reads up to the group 0 EOF. Throws DxfFault.
  void Read();

 private:
  void ReadSection();
  void ReadHeader();
  void ReadTables();
  void ReadTable();
  void ReadBlocks();
  void ReadBlock();
  void ReadEntities();
  void ReadObjects();
  void SkipSection();

  // Takes the next group; the end of the text is a fault.
  void Advance();
  // Collects the object whose first group is at hand; the next object's is at hand afterwards.
  void CollectObject();
  bool AtStart(std::string_view type) const { return group_.code == 0 && group_.value == type; }
  // The section's end, or a fault for what cannot follow before it.
  bool AtSectionEnd() const;
  // Faults at the value of the group at hand, or at its code when that is not 0.
  [[noreturn]] void Fail(const std::string& message) const;
  [[noreturn]] void FailOutside(const std::string& place) const;

  GroupReader reader_;
  DxfVisitor& visitor_;
  Group group_;
  DxfObject object_;
  std::string_view section_;  // empty outside of sections
  size_t sectionLine_ = 0;
};

}  // namespace hdiplot
