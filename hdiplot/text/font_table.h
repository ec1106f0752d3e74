// The fonts that drawings commonly name.
#pragma once

#include <span>
#include <string_view>

namespace hdiplot {

struct OutlineFileEntry {
  std::string_view stem;  // lower case, also below
  std::string_view family;
  bool bold = false;
  bool italic = false;
};

struct StrokeFileEntry {
  std::string_view stem;
  std::string_view font;  // a Hershey font, or a family for a big font
  bool monospaced = false;
  bool isFamily = false;
};

[[nodiscard]] std::span<const OutlineFileEntry> OutlineFileTable();
[[nodiscard]] std::span<const StrokeFileEntry> StrokeFileTable();

// Substitutes for a family that is not installed, the most similar first.
[[nodiscard]] std::span<const std::string_view> StandInFamilies(std::string_view family);

}  // namespace hdiplot
