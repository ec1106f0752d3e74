// The groups of a text DXF: a code on one line and its value on the next.
#pragma once

#include <string_view>

#include "hdiplot/dxf/group_source.h"

namespace hdiplot {

class TextGroups : public GroupSource {
 public:
  // `text` has to outlive the groups. Lines end in LF, CR LF or CR, which may be mixed.
  explicit TextGroups(std::string_view text) : text_(text) {}

  Step Next(Group& group) override;
  bool SkipDamage() override;
  [[nodiscard]] size_t Position() const override { return cursor_.at; }
  [[nodiscard]] size_t Place() const override { return cursor_.line; }
  [[nodiscard]] const char* PlaceName() const override { return "line"; }

 private:
  struct Cursor {
    size_t at = 0;    // of the next line
    size_t line = 0;  // the last one read, 0 before the first
  };

  bool NextLine(std::string_view& content, bool isValue);
  [[nodiscard]] size_t BehindReturn(size_t at, bool isValue) const;

  std::string_view text_;
  Cursor cursor_;
  Cursor object_;  // after the start of the current object
};

}  // namespace hdiplot
