// Reads the sections, tables and blocks of a DXF and hands their objects to the builder. Where they are not
// properly nested, it reports that and goes by the types of the objects.
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
  // `place` is that of the group SECTION; 0 without one.
  void EnterSection(Section section, std::string_view name, size_t place = 0);
  void LeaveSection();
  void CloseSection();
  void CloseTableOrBlock();
  void EndBlock();
  [[nodiscard]] Section HomeOf(std::string_view type) const;
  [[nodiscard]] std::string MissingAround(std::string_view type, Section home) const;
  Section Settle(std::string_view type);
  bool EndsAtMark();

  using Visit = void (DrawingBuilder::*)(const DxfObject&);
  // Collects the current object and hands it over. A damaged one is left out unless it is useful in part.
  // Returns whether it was taken.
  bool HandOver(Visit visit, bool isUsefulInPart);
  void CollectObject();

  // Reads the next usable group; at the end of the file one of code 0 without a value.
  void Advance(Group& group);
  void Advance() { Advance(group_); }
  void NoteDamage(bool isSlight);
  void ReportDamage();
  [[nodiscard]] bool AtStart(std::string_view type) const {
    return group_.code == 0 && group_.Value() == type;
  }
  void ReportOpen(const std::string& what, size_t place, const char* end);
  void Report(std::string message) { faults_.Report({group_.place, std::move(message)}); }

  GroupSource& source_;
  DrawingBuilder& builder_;
  FaultLog& faults_;
  Progress& progress_;
  Group group_;
  bool atEnd_ = false;
  DxfObject object_;
  std::optional<DxfFault> damage_;  // the first one of the current object, not yet reported
  bool isDamageSlight_ = true;
  Section section_ = Section::kNone;
  ValueCheck check_ = ValueCheck::kNumber;  // the section's
  std::string sectionName_;
  size_t sectionPlace_ = 0;
  size_t tablePlace_ = 0;  // of the open table, like the next; 0: there is none
  size_t blockPlace_ = 0;
  bool isAstray_ = false;  // a misplaced object has been reported, and no other followed
};

}  // namespace hdiplot
