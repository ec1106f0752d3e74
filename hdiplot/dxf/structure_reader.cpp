// SECTION ... ENDSEC, which contain TABLE ... ENDTAB and BLOCK ... ENDBLK.
#include "hdiplot/dxf/structure_reader.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <utility>

namespace hdiplot {
namespace {

constexpr int kTypeCode = 0;
constexpr int kNameCode = 2;
constexpr int kVariableCode = 9;
constexpr int kFirstExtendedCode = 1000;

constexpr std::string_view kTableTypes[] = {"TABLE", "ENDTAB", "LAYER", "LTYPE", "STYLE",   "BLOCK_RECORD",
                                            "VPORT", "VIEW",   "UCS",   "APPID", "DIMSTYLE"};
constexpr std::string_view kBlockTypes[] = {"BLOCK", "ENDBLK"};
constexpr std::string_view kObjectTypes[] = {"DICTIONARY",      "LAYOUT",         "FIELD",
                                             "IMAGEDEF",        "SORTENTSTABLE",  "MLINESTYLE",
                                             "RASTERVARIABLES", "SPATIAL_FILTER", "ACDBDICTIONARYWDFLT"};
// Of these, numbers are used.
constexpr std::string_view kTypesWithNumbers[] = {"LAYOUT", "SPATIAL_FILTER", "MLINESTYLE",
                                                  "RASTERVARIABLES"};

template <typename Types>
bool IsOneOf(std::string_view type, const Types& types) {
  return std::ranges::find(types, type) != std::end(types);
}

// Rejects groups whose codes have another meaning in the object itself: those between "{" and "}" of group
// 102 (links and data of other programs), of an embedded object (from group 101 on), and of a record in an
// attribute. The outline of an inverted clip, in a record of its own, is kept.
class ForeignDataFilter {
 public:
  bool Keeps(const Group& group) {
    if (group.code == 101 || (group.code == 100 && group.Value() == "AcDbXrecord")) embedded_ = true;
    if (group.code == 102) {
      braced_ = group.Value().starts_with('{');
      inDictionary_ = group.Value() == "{ACAD_XDICTIONARY";
      inOutline_ = embedded_ && group.Value() == BlockClips::kInverted;
      return false;
    }
    return inOutline_ || (!braced_ && !embedded_);
  }

  [[nodiscard]] bool IsInOutline() const { return inOutline_; }
  [[nodiscard]] bool IsEmbedded() const { return embedded_; }

  // Whether a group that it rejects is the handle of the object's dictionary.
  bool IsDictionary(const Group& group) const { return inDictionary_ && !embedded_ && group.code == 360; }

 private:
  bool braced_ = false;
  bool inDictionary_ = false;
  bool embedded_ = false;
  bool inOutline_ = false;
};

}  // namespace

StructureReader::StructureReader(GroupSource& source, DrawingBuilder& builder, FaultLog& faults,
                                 Progress& progress)
    : source_(source), builder_(builder), faults_(faults), progress_(progress), object_(faults) {
  object_.isBinary = source.IsBinary();
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

// Whether EOF is followed by no other object.
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

// Before something that cannot be in a section.
void StructureReader::CloseSection() {
  CloseTableOrBlock();
  if (sectionPlace_ != 0) {
    ReportOpen("section " + Quoted(sectionName_), sectionPlace_, "ENDSEC");
  }
  LeaveSection();
}

void StructureReader::CloseTableOrBlock() {
  if (tablePlace_ != 0) ReportOpen("table", tablePlace_, "ENDTAB");
  tablePlace_ = 0;
  if (blockPlace_ == 0) return;
  ReportOpen("block", blockPlace_, "ENDBLK");
  EndBlock();
}

void StructureReader::ReportOpen(const std::string& what, size_t place, const char* end) {
  Report(fmt::format("the {} of {} {} has no {}", what, source_.PlaceName(), place, end));
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
    faults_.Report({place, fmt::format("group {} stands outside of any section", group_.code)});
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
    faults_.Report({place, fmt::format("group {} stands outside of any {}", group_.code,
                                       section_ == Section::kTables ? "table" : "block")});
  }
  const auto isAtNext = [this] {
    return group_.code == kTypeCode || (section_ == Section::kHeader && group_.code == kVariableCode);
  };
  do {
    Advance();
  } while (!atEnd_ && !isAtNext());
}

// The section that objects of the type belong to, if they belong to one.
StructureReader::Section StructureReader::HomeOf(std::string_view type) const {
  if (IsOneOf(type, kTableTypes)) return Section::kTables;
  if (IsOneOf(type, kBlockTypes)) return Section::kBlocks;
  if (IsOneOf(type, kObjectTypes)) return Section::kObjects;
  if (builder_.Plots(type)) return section_ == Section::kBlocks ? Section::kBlocks : Section::kEntities;
  return section_;
}

// What an object of the type is missing around it. Empty: nothing.
std::string StructureReader::MissingAround(std::string_view type, Section home) const {
  if (section_ == Section::kNone) return "any section";
  if (home != section_) return std::string("the section ").append(NameOf(home));
  if (home == Section::kTables && tablePlace_ == 0 && type != "TABLE") return "any table";
  if (home == Section::kBlocks && blockPlace_ == 0 && type != "BLOCK") return "any block";
  return "";
}

// Returns the section that an object of the type belongs to. Reports if that is not the current one, and
// enters it unless the rest of a block, or entities after a stray mark of a block, are expected next.
StructureReader::Section StructureReader::Settle(std::string_view type) {
  if ((section_ == Section::kEntities || blockPlace_ != 0) && builder_.Plots(type)) {
    isAstray_ = false;
    return section_;
  }
  const bool isBlock = IsOneOf(type, kBlockTypes);
  // Strict reading checks within sections only that blocks are in theirs.
  const bool isWithin = tablePlace_ != 0 || blockPlace_ != 0 || section_ == Section::kObjects ||
                        section_ == Section::kOther || (section_ == Section::kEntities && !isBlock);
  if (faults_.IsStrict() && isWithin) return section_;
  const Section home = HomeOf(type);
  const std::string missing = MissingAround(type, home);
  if (!missing.empty() && !isAstray_) Report(Quoted(type) + " stands outside of " + missing);
  const bool isAmongEntities = isBlock && section_ == Section::kEntities;
  if (home != section_ && blockPlace_ == 0 && !isAmongEntities) {
    CloseTableOrBlock();
    LeaveSection();
    EnterSection(home, NameOf(home));
  }
  isAstray_ = !missing.empty();
  return home;
}

void StructureReader::ReadObject(std::string_view type) {
  if (type == "TABLE" || type == "BLOCK") CloseTableOrBlock();
  // The vertices in between need these, even if they are damaged.
  const bool isPolylineMark = type == "POLYLINE" || type == "SEQEND";
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
        if (!isBlock && section_ != Section::kBlocks) EndBlock();  // entities of the section follow
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
      source_.SetValueCheck(IsOneOf(type, kTypesWithNumbers) ? ValueCheck::kNumber : ValueCheck::kNone);
      HandOver(&DrawingBuilder::OnObject, true);
      source_.SetValueCheck(check_);
      break;
    default:
      HandOver(nullptr, true);
  }
}

bool StructureReader::HandOver(Visit visit, bool isUsefulInPart) {
  CollectObject();
  if (damage_ && !isDamageSlight_ && !isUsefulInPart) {
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
  object_.Clear();
  object_.type = group_.Value();
  object_.place = group_.place;
  ForeignDataFilter filter;
  const int end = section_ == Section::kHeader ? kVariableCode : kTypeCode;  // elsewhere group 9 is a text
  // Groups are read in place, since most of them stay.
  while (true) {
    Group& group = object_.groups.emplace_back();
    Advance(group);
    if (group.code == kTypeCode || group.code == end) break;
    if (group.code >= kFirstExtendedCode) {
      object_.extended.push_back(group);
    } else if (filter.Keeps(group)) {
      object_.IndexLast();
      continue;
    } else if (filter.IsDictionary(group)) {
      object_.dictionary = group.Value();
    } else if (filter.IsInOutline()) {
      source_.SetValueCheck(ValueCheck::kNumber);
    } else if (filter.IsEmbedded() && object_.type == "MTEXT") {
      object_.embedded.push_back(group);
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
    // An entity can do without a whole number, mostly.
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
