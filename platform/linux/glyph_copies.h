// Copies of glyphs within a font. Who reads text back from glyph numbers needs a number for each character,
// also for characters that look the same, such as the hyphen and the soft hyphen.
#pragma once

#include <span>

#include "platform/sfnt_bytes.h"

namespace hdi {

// The tables that know of a font's glyphs.
struct GlyphTables {
  SfntTable head;
  SfntTable hhea;
  SfntTable maxp;
  SfntTable hmtx;
  SfntTable loca;
  SfntTable glyf;
};

// Appends a glyph with the outline and the metrics of each of `originals`, in their order. False, with the
// tables as they were, when they are broken or there would be too many glyphs.
[[nodiscard]] bool AppendGlyphCopies(GlyphTables& tables, std::span<const uint16_t> originals);

}  // namespace hdi
