// What the tables of a font say of it, before it becomes a face.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/windows/selected_font.h"

namespace hdi {

// A LOGFONTW has room for so many units of a family's name. Longer names are known by their beginning.
inline constexpr size_t kMaxFamilyUnits = 31;

// Of the table "name", in all languages, the best one for a reader of English first.
struct FontNaming {
  std::vector<std::u16string> families;  // cut to fit a LOGFONTW
  std::vector<std::u16string> fullNames;
  std::u16string style;

  bool operator==(const FontNaming&) const = default;
};

struct FontFacts {
  FontNaming names;
  double unitsPerEm;
  int32_t weight;  // 400 is regular
  bool isItalic;
  int32_t distanceFromOrdinaryWidth;
  bool isSymbol;  // has a Microsoft symbol map and no other
};

// Empty for a font without such a table: GDI's bitmap and stroke fonts.
[[nodiscard]] FontNaming ReadNaming(const SelectedFont& font);

// Nothing for a font without TrueType outlines, a family or a character map, and for a variable one, whose
// named instances no file holds.
[[nodiscard]] std::optional<FontFacts> ReadFacts(const SelectedFont& font);

}  // namespace hdi
