// The outline of a DXF: SECTION ... ENDSEC, within them TABLE ... ENDTAB and BLOCK ... ENDBLK.
#include "host/hdiplot/dxf/structure_reader.h"

#include <string>

namespace hdiplot {
namespace {

constexpr int kTypeCode = 0;
constexpr int kVariableCode = 9;
constexpr int kFirstExtendedCode = 1000;

// Keeps what belongs to an object itself: nothing between "{" and "}" of group 102 (other programs' notes and
// links), nothing of an object embedded in it (from group 101 on) or of the record about one (in an
// attribute), all of which use codes again that mean something else in the object.
class ForeignDataFilter {
 public:
  bool Keeps(const Group& group) {
    if (group.code == 101 || (group.code == 100 && group.value == "AcDbXrecord")) embedded_ = true;
    if (group.code == 102) {
      braced_ = group.value.starts_with('{');
      inDictionary_ = group.value == "{ACAD_XDICTIONARY";
      return false;
    }
    return !braced_ && !embedded_;
  }

  // Of what it does not keep: whether it is the handle of the object's dictionary.
  bool IsDictionary(const Group& group) const { return inDictionary_ && !embedded_ && group.code == 360; }

 private:
  bool braced_ = false;
  bool inDictionary_ = false;
  bool embedded_ = false;
};

}  // namespace

StructureReader::StructureReader(std::string_view text, DxfVisitor& visitor)
    : reader_(text), visitor_(visitor) {}

void StructureReader::Read() {
  for (Advance(); !AtStart("EOF");) {
    if (AtStart("ENDSEC")) Fail("ENDSEC without a section");
    if (!AtStart("SECTION")) FailOutside("any section");
    ReadSection();
  }
}

void StructureReader::ReadSection() {
  sectionLine_ = group_.ValueLine();
  section_ = "unnamed";
  Advance();
  if (group_.code != 2) throw DxfFault{group_.line, "the section's name, group 2, should stand here"};
  section_ = group_.value;
  if (section_ == "HEADER") {
    ReadHeader();
  } else if (section_ == "TABLES") {
    ReadTables();
  } else if (section_ == "BLOCKS") {
    ReadBlocks();
  } else if (section_ == "ENTITIES") {
    ReadEntities();
  } else if (section_ == "OBJECTS") {
    ReadObjects();
  } else {
    SkipSection();
  }
  section_ = {};
  reader_.SetValueCheck(ValueCheck::kNumber);
  Advance();
}

void StructureReader::ReadHeader() {
  for (Advance(); !AtSectionEnd();) {
    if (group_.code != kVariableCode) {
      throw DxfFault{group_.line, "a variable's name, group 9, should stand here"};
    }
    CollectObject();
    visitor_.OnVariable(object_);
  }
}

void StructureReader::ReadTables() {
  reader_.SetValueCheck(ValueCheck::kCoordinates);
  for (Advance(); !AtSectionEnd();) {
    if (!AtStart("TABLE")) FailOutside("any table");
    ReadTable();
  }
}

void StructureReader::ReadTable() {
  const size_t line = group_.ValueLine();
  for (CollectObject(); !AtStart("ENDTAB");) {
    if (AtStart("TABLE") || AtStart("ENDSEC") || AtStart("SECTION") || AtStart("EOF")) {
      Fail("the table of line " + std::to_string(line) + " has no ENDTAB");
    }
    CollectObject();
    visitor_.OnTableEntry(object_);
  }
  CollectObject();
}

void StructureReader::ReadBlocks() {
  reader_.SetValueCheck(ValueCheck::kCoordinates);
  for (Advance(); !AtSectionEnd();) {
    if (!AtStart("BLOCK")) FailOutside("any block");
    ReadBlock();
  }
}

void StructureReader::ReadBlock() {
  const size_t line = group_.ValueLine();
  CollectObject();
  visitor_.OnBlock(object_);
  while (!AtStart("ENDBLK")) {
    if (AtStart("BLOCK") || AtStart("ENDSEC") || AtStart("SECTION") || AtStart("EOF")) {
      Fail("the block of line " + std::to_string(line) + " has no ENDBLK");
    }
    CollectObject();
    visitor_.OnEntity(object_);
  }
  visitor_.OnBlockEnd();
  CollectObject();
}

void StructureReader::ReadEntities() {
  reader_.SetValueCheck(ValueCheck::kCoordinates);
  for (Advance(); !AtSectionEnd();) {
    if (group_.code != kTypeCode) throw DxfFault{group_.line, "an entity, group 0, should stand here"};
    if (AtStart("BLOCK") || AtStart("ENDBLK")) FailOutside("the section BLOCKS");
    CollectObject();
    visitor_.OnEntity(object_);
  }
  visitor_.OnEntitiesEnd();
}

// Objects are of any form, and most of them nobody looks into.
void StructureReader::ReadObjects() {
  reader_.SetValueCheck(ValueCheck::kNone);
  for (Advance(); !AtSectionEnd();) {
    reader_.SetValueCheck(AtStart("LAYOUT") ? ValueCheck::kNumber : ValueCheck::kNone);
    if (group_.code == kTypeCode) {
      CollectObject();
      visitor_.OnObject(object_);
    } else {
      Advance();
    }
  }
}

void StructureReader::SkipSection() {
  reader_.SetValueCheck(ValueCheck::kNone);
  do {
    Advance();
  } while (!AtSectionEnd());
}

void StructureReader::Advance() {
  if (reader_.Next(group_)) return;
  const std::string where = section_.empty() ? "" : " within the section " + Quoted(section_);
  throw DxfFault{reader_.Line(), "the file is cut off: it ends here" + where + ", without EOF"};
}

void StructureReader::CollectObject() {
  object_.type = group_.value;
  object_.line = group_.ValueLine();
  object_.groups.clear();
  object_.extended.clear();
  object_.dictionary = {};
  ForeignDataFilter filter;
  const bool inHeader = section_ == "HEADER";  // elsewhere group 9 is a text like others
  for (Advance(); group_.code != kTypeCode && !(inHeader && group_.code == kVariableCode); Advance()) {
    if (group_.code >= kFirstExtendedCode) {
      object_.extended.push_back(group_);
    } else if (filter.Keeps(group_)) {
      object_.groups.push_back(group_);
    } else if (filter.IsDictionary(group_)) {
      object_.dictionary = group_.value;
    }
  }
}

bool StructureReader::AtSectionEnd() const {
  if (AtStart("ENDSEC")) return true;
  if (AtStart("SECTION") || AtStart("EOF")) {
    Fail("the section " + Quoted(section_) + " of line " + std::to_string(sectionLine_) + " has no ENDSEC");
  }
  return false;
}

void StructureReader::Fail(const std::string& message) const { throw DxfFault{group_.ValueLine(), message}; }

void StructureReader::FailOutside(const std::string& place) const {
  if (group_.code == kTypeCode) Fail(Quoted(group_.value) + " stands outside of " + place);
  throw DxfFault{group_.line, "group " + std::to_string(group_.code) + " stands outside of " + place};
}

}  // namespace hdiplot
