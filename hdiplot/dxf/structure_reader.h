// Walks through the sections, tables and blocks of a DXF and hands over what stands in them. Where they are
// not properly nested it reports that, and tells by its type where an object belongs.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "hdiplot/dxf/drawing_builder.h"
#include "hdiplot/dxf/group_source.h"
#include "hdiplot/system/progress.h"

namespace hdiplot {

class StructureReader {
 public:
  // All of them have to outlive the reader. Progress counts bytes of the file.
  StructureReader(GroupSource& source, DrawingBuilder& builder, FaultLog& faults, Progress& progress);

  // Reads up to the group 0 EOF. Throws DxfFault when the log is strict.
  void Read();

 private:
  enum class Section : uint8_t { kNone, kHeader, kTables, kBlocks, kEntities, kObjects, kOther };

  static Section SectionOf(std::string_view name);
  static std::string_view NameOf(Section section);

  void ReadNext();
  void ReadObject(std::string_view type);
  void ReadStrayGroups();
  void BeginSection();
  // `place` is that of the mark of the section, if it has one.
  void EnterSection(Section section, std::string_view name, size_t place = 0);
  void LeaveSection();
  void CloseSection();
  void CloseTableOrBlock();
  void EndBlock();
  Section Settle(std::string_view type);
  bool EndsAtMark();

  using Visit = void (DrawingBuilder::*)(const DxfObject&);
  // Collects the object at hand and hands it over. Of one that is damaged, what could be read is handed over
  // when it is of use in part; else it is left out. Whether it was taken.
  bool HandOver(Visit visit, bool isOfUseInPart);
  void CollectObject();

  // Takes the next group that can be used; at the end one of code 0 without a value.
  void Advance(Group& group);
  void Advance() { Advance(group_); }
  void NoteDamage(bool isSlight);
  void ReportDamage();
  [[nodiscard]] bool AtStart(std::string_view type) const {
    return group_.code == 0 && group_.Value() == type;
  }
  void Report(std::string message) { faults_.Report({group_.place, std::move(message)}); }

  GroupSource& source_;
  DrawingBuilder& builder_;
  FaultLog& faults_;
  Progress& progress_;
  Group group_;
  bool atEnd_ = false;
  DxfObject object_;
  std::optional<DxfFault> damage_;  // the first of the object at hand, not yet reported
  bool isDamageSlight_ = true;
  Section section_ = Section::kNone;
  ValueCheck check_ = ValueCheck::kNumber;  // the section's
  std::string sectionName_;
  size_t sectionPlace_ = 0;
  size_t tablePlace_ = 0;  // of the table that is open, 0 without one; the same of the next
  size_t blockPlace_ = 0;
  bool isAstray_ = false;  // objects without a place have been reported, and there was no other since
};

}  // namespace hdiplot
