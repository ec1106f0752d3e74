// The fonts that drawings usually name.
#pragma once

#include <span>
#include <string_view>

namespace hdiplot {

struct OutlineFileEntry {
  std::string_view stem;  // lower case, as in the next
  std::string_view family;
  bool bold = false;
  bool italic = false;
};

struct StrokeFileEntry {
  std::string_view stem;
  std::string_view font;  // a Hershey font, or for a large alphabet a family
  bool monospaced = false;
  bool isFamily = false;
};

[[nodiscard]] std::span<const OutlineFileEntry> OutlineFileTable();
[[nodiscard]] std::span<const StrokeFileEntry> StrokeFileTable();

}  // namespace hdiplot
