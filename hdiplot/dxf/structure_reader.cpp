// The outline of a DXF: SECTION ... ENDSEC, within them TABLE ... ENDTAB and BLOCK ... ENDBLK.
#include "hdiplot/dxf/structure_reader.h"

#include <algorithm>
#include <array>
#include <utility>

#include "hdiplot/dxf/shape_reader.h"

namespace hdiplot {
namespace {

constexpr int kTypeCode = 0;
constexpr int kNameCode = 2;
constexpr int kVariableCode = 9;
constexpr int kFirstExtendedCode = 1000;

constexpr std::string_view kTableTypes[] = {"TABLE", "ENDTAB", "LAYER", "LTYPE", "STYLE",   "BLOCK_RECORD",
                                            "VPORT", "VIEW",   "UCS",   "APPID", "DIMSTYLE"};
constexpr std::string_view kBlockTypes[] = {"BLOCK", "ENDBLK"};
constexpr std::string_view kObjectTypes[] = {"DICTIONARY", "LAYOUT", "FIELD", "IMAGEDEF"};

// With the shapes, what is plotted.
constexpr std::string_view kOtherEntities[] = {"INSERT",   "TEXT",     "MTEXT",    "ATTRIB",
                                               "ATTDEF",   "HATCH",    "VERTEX",   "SEQEND",
                                               "POLYLINE", "VIEWPORT", "DIMENSION"};

template <typename Types>
bool IsOneOf(std::string_view type, const Types& types) {
  return std::ranges::find(types, type) != std::end(types);
}

// Keeps what belongs to an object itself: nothing between "{" and "}" of group 102 (other programs' notes and
// links), nothing of an object embedded in it (from group 101 on) or of the record about one (in an
// attribute), all of which use codes again that mean something else in the object.
class ForeignDataFilter {
 public:
  bool Keeps(const Group& group) {
    if (group.code == 101 || (group.code == 100 && group.Value() == "AcDbXrecord")) embedded_ = true;
    if (group.code == 102) {
      braced_ = group.Value().starts_with('{');
      inDictionary_ = group.Value() == "{ACAD_XDICTIONARY";
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

StructureReader::StructureReader(GroupSource& source, DrawingBuilder& builder, FaultLog& faults,
                                 Progress& progress)
    : source_(source), builder_(builder), faults_(faults), progress_(progress) {
  object_.faults = &faults;
}

StructureReader::Section StructureReader::SectionOf(std::string_view name) {
  for (const Section section :
       {Section::kHeader, Section::kTables, Section::kBlocks, Section::kEntities, Section::kObjects}) {
    if (name == NameOf(section)) return section;
  }
  return Section::kOther;
}

std::string_view StructureReader::NameOf(Section section) {
  constexpr std::array<std::string_view, 7> kNames = {"",         "HEADER",  "TABLES", "BLOCKS",
                                                      "ENTITIES", "OBJECTS", "unnamed"};
  return kNames[static_cast<size_t>(section)];
}

void StructureReader::Read() {
  Advance();
  while (!atEnd_) {
    if (AtStart("EOF") && EndsAtMark()) break;
    ReadNext();
    progress_.Advance(source_.Position());
  }
  ReportDamage();
  if (blockPlace_ != 0) builder_.OnBlockEnd();
  LeaveSection();
}

// Whether nothing follows on EOF.
bool StructureReader::EndsAtMark() {
  const Group mark = group_;
  if (!faults_.IsStrict() && source_.Next(group_) == GroupSource::Step::kGroup && group_.code == kTypeCode) {
    faults_.Report({mark.place, "the drawing goes on behind EOF"});
    return false;
  }
  group_ = mark;
  CloseSection();
  return true;
}

void StructureReader::ReadNext() {
  if (group_.code != kTypeCode) {
    ReadStrayGroups();
    return;
  }
  const std::string_view type = group_.Value();
  if (type == "SECTION") {
    BeginSection();
  } else if (type == "ENDSEC") {
    if (section_ == Section::kNone) Report("ENDSEC without a section");
    CloseTableOrBlock();
    LeaveSection();
    Advance();
  } else {
    ReadObject(type);
  }
}

void StructureReader::BeginSection() {
  CloseSection();
  const size_t place = group_.place;
  Advance();
  if (!atEnd_ && group_.code == kNameCode) {
    EnterSection(SectionOf(group_.Value()), group_.Value(), place);
    Advance();
    return;
  }
  faults_.Report({group_.CodePlace(), "the section's name, group 2, should stand here"});
  EnterSection(Section::kOther, NameOf(Section::kOther), place);
}

void StructureReader::EnterSection(Section section, std::string_view name, size_t place) {
  sectionPlace_ = place;
  section_ = section;
  sectionName_ = name;
  isAstray_ = false;
  const bool isDrawn =
      section == Section::kTables || section == Section::kBlocks || section == Section::kEntities;
  check_ = isDrawn                      ? ValueCheck::kCoordinates
           : section == Section::kOther ? ValueCheck::kNone
                                        : ValueCheck::kNumber;
  source_.SetValueCheck(check_);
}

void StructureReader::LeaveSection() {
  if (section_ == Section::kEntities) builder_.OnEntitiesEnd();
  EnterSection(Section::kNone, {});
}

// Where something starts or ends that cannot stand in a section.
void StructureReader::CloseSection() {
  CloseTableOrBlock();
  if (sectionPlace_ != 0) {
    Report("the section " + Quoted(sectionName_) + " of " + source_.PlaceName() + " " +
           std::to_string(sectionPlace_) + " has no ENDSEC");
  }
  LeaveSection();
}

void StructureReader::CloseTableOrBlock() {
  const auto report = [this](const char* what, size_t place, const char* end) {
    Report(std::string("the ") + what + " of " + source_.PlaceName() + " " + std::to_string(place) +
           " has no " + end);
  };
  if (tablePlace_ != 0) report("table", tablePlace_, "ENDTAB");
  tablePlace_ = 0;
  if (blockPlace_ == 0) return;
  report("block", blockPlace_, "ENDBLK");
  EndBlock();
}

void StructureReader::EndBlock() {
  blockPlace_ = 0;
  builder_.OnBlockEnd();
}

void StructureReader::ReadStrayGroups() {
  const bool isVariable = group_.code == kVariableCode && group_.Value().starts_with('$');
  const auto place = group_.CodePlace();
  if (section_ == Section::kHeader && group_.code == kVariableCode) {
    HandOver(&DrawingBuilder::OnVariable, true);
    return;
  }
  if (section_ == Section::kNone) {
    faults_.Report({place, "group " + std::to_string(group_.code) + " stands outside of any section"});
    if (group_.code == kNameCode && SectionOf(group_.Value()) != Section::kOther) {
      EnterSection(SectionOf(group_.Value()), group_.Value());
    } else if (isVariable) {
      EnterSection(Section::kHeader, NameOf(Section::kHeader));
      return;
    }
  } else if (section_ == Section::kHeader) {
    faults_.Report({place, "a variable's name, group 9, should stand here"});
  } else if (section_ == Section::kEntities) {
    faults_.Report({place, "an entity, group 0, should stand here"});
  } else if (section_ == Section::kTables || section_ == Section::kBlocks) {
    faults_.Report({place, "group " + std::to_string(group_.code) + " stands outside of any " +
                               (section_ == Section::kTables ? "table" : "block")});
  }
  const auto isAtNext = [this] {
    return group_.code == kTypeCode || (section_ == Section::kHeader && group_.code == kVariableCode);
  };
  do {
    Advance();
  } while (!atEnd_ && !isAtNext());
}

// The section that an object of the type belongs to. Reports when that is not the one at hand, and enters it
// unless something else is to be expected next: the rest of a block, or entities behind a block's mark.
StructureReader::Section StructureReader::Settle(std::string_view type) {
  const bool isPlotted = FindShapeReader(type) != nullptr || IsOneOf(type, kOtherEntities);
  if (isPlotted && (section_ == Section::kEntities || blockPlace_ != 0)) {
    isAstray_ = false;
    return section_;
  }
  const bool isBlock = IsOneOf(type, kBlockTypes);
  // Of what is within the outline, the strict reading knows no more than that blocks have a section.
  const bool isWithin = tablePlace_ != 0 || blockPlace_ != 0 || section_ == Section::kObjects ||
                        section_ == Section::kOther || (section_ == Section::kEntities && !isBlock);
  if (faults_.IsStrict() && isWithin) return section_;
  Section home = section_;
  if (IsOneOf(type, kTableTypes)) home = Section::kTables;
  if (isBlock) home = Section::kBlocks;
  if (IsOneOf(type, kObjectTypes)) home = Section::kObjects;
  if (isPlotted && section_ != Section::kBlocks) home = Section::kEntities;

  std::string outside;
  if (section_ == Section::kNone) {
    outside = "any section";
  } else if (section_ == Section::kTables && home == section_ && tablePlace_ == 0 && type != "TABLE") {
    outside = "any table";
  } else if (section_ == Section::kBlocks && home == section_ && blockPlace_ == 0 && type != "BLOCK") {
    outside = "any block";
  } else if (home != section_) {
    outside = std::string("the section ").append(NameOf(home));
  }
  if (!outside.empty() && !isAstray_) Report(Quoted(type) + " stands outside of " + outside);
  const bool isAmongEntities = isBlock && section_ == Section::kEntities;
  if (home != section_ && blockPlace_ == 0 && !isAmongEntities) {
    CloseTableOrBlock();
    LeaveSection();
    EnterSection(home, NameOf(home));
  }
  isAstray_ = !outside.empty();
  return home;
}

void StructureReader::ReadObject(std::string_view type) {
  if (type == "TABLE" || type == "BLOCK") CloseTableOrBlock();
  const bool isPolylineMark = type == "POLYLINE" || type == "SEQEND";  // which hold others together
  switch (Settle(type)) {
    case Section::kTables:
      if (type == "TABLE" || type == "ENDTAB") {
        tablePlace_ = type == "TABLE" ? group_.place : 0;
        HandOver(nullptr, true);
      } else {
        HandOver(&DrawingBuilder::OnTableEntry, true);
      }
      break;
    case Section::kBlocks:
      if (type == "BLOCK") {
        blockPlace_ = group_.place;
        const bool isBlock = HandOver(&DrawingBuilder::OnBlock, true);
        if (!isBlock && section_ != Section::kBlocks) EndBlock();  // what follows is not its content
      } else if (type == "ENDBLK") {
        if (blockPlace_ != 0) EndBlock();
        HandOver(nullptr, true);
      } else {
        HandOver(blockPlace_ != 0 ? &DrawingBuilder::OnEntity : nullptr, isPolylineMark);
      }
      break;
    case Section::kEntities:
      HandOver(&DrawingBuilder::OnEntity, isPolylineMark);
      break;
    case Section::kObjects:
      // Objects are of any form, and most of them nobody looks into.
      source_.SetValueCheck(type == "LAYOUT" ? ValueCheck::kNumber : ValueCheck::kNone);
      HandOver(&DrawingBuilder::OnObject, true);
      source_.SetValueCheck(check_);
      break;
    default:
      HandOver(nullptr, true);
  }
}

bool StructureReader::HandOver(Visit visit, bool isOfUseInPart) {
  CollectObject();
  if (damage_ && !isDamageSlight_ && !isOfUseInPart) {
    faults_.ReportLeftOut(*std::exchange(damage_, std::nullopt), object_.type);
    return false;
  }
  ReportDamage();
  if (visit == nullptr) return false;
  try {
    (builder_.*visit)(object_);
    return true;
  } catch (const DxfFault& fault) {
    faults_.ReportLeftOut(fault, object_.type);
    return false;
  }
}

void StructureReader::CollectObject() {
  ReportDamage();
  object_.type = group_.Value();
  object_.place = group_.place;
  object_.groups.clear();
  object_.extended.clear();
  object_.dictionary = {};
  ForeignDataFilter filter;
  const int end = section_ == Section::kHeader ? kVariableCode : kTypeCode;  // elsewhere group 9 is a text
  // Each group is read where it stays; a copy would wait for what has just been written.
  while (true) {
    Group& group = object_.groups.emplace_back();
    Advance(group);
    if (group.code == kTypeCode || group.code == end) break;
    if (group.code >= kFirstExtendedCode) {
      object_.extended.push_back(group);
    } else if (filter.Keeps(group)) {
      continue;
    } else if (filter.IsDictionary(group)) {
      object_.dictionary = group.Value();
    }
    object_.groups.pop_back();
  }
  group_ = object_.groups.back();
  object_.groups.pop_back();
}

void StructureReader::Advance(Group& group) {
  using Step = GroupSource::Step;
  for (Step step = source_.Next(group); step != Step::kGroup; step = source_.Next(group)) {
    if (step == Step::kEnd) {
      group = {};
      atEnd_ = true;
      const std::string where =
          section_ == Section::kNone ? "" : " within the section " + Quoted(sectionName_);
      faults_.Report({source_.Place(), "the file is cut off: it ends here" + where + ", without EOF"});
      return;
    }
    // A whole number is hardly ever what makes up an entity.
    NoteDamage(step == Step::kBadValue ? FormOf(group.code) != ValueForm::kReal : source_.SkipDamage());
  }
}

void StructureReader::NoteDamage(bool isSlight) {
  if (faults_.IsStrict()) throw DxfFault(source_.Fault());
  if (!damage_) isDamageSlight_ = true;
  if (!damage_) damage_ = source_.Fault();
  isDamageSlight_ = isDamageSlight_ && isSlight;
}

void StructureReader::ReportDamage() {
  if (damage_) faults_.Report(*std::exchange(damage_, std::nullopt));
}

}  // namespace hdiplot
