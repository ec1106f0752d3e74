// Facts about a font, read from its tables before it becomes a face.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/windows/selected_font.h"

namespace hdi {

// From the "name" table, in all languages, best for an English reader first.
struct FontNaming {
  std::vector<std::u16string> families;  // truncated to fit a LOGFONTW
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
  bool isSymbol;  // has a Microsoft symbol map and no Unicode map
};

// Empty for a font without such a table: GDI's bitmap and stroke fonts.
[[nodiscard]] FontNaming ReadNaming(const SelectedFont& font);

// Nothing for a font without TrueType outlines, a family or a character map, and for a variable font, since
// no file holds the outlines of its named instances.
[[nodiscard]] std::optional<FontFacts> ReadFacts(const SelectedFont& font);

}  // namespace hdi
