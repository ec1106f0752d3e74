// Duplicates glyphs of a font. Extracting text from glyph numbers requires a glyph for each character, even
// for characters that look the same, such as the hyphen and the soft hyphen.
#pragma once

#include <span>

#include "platform/sfnt_bytes.h"

namespace hdi {

// The tables that depend on a font's glyphs.
struct GlyphTables {
  SfntTable head;
  SfntTable hhea;
  SfntTable maxp;
  SfntTable hmtx;
  SfntTable loca;
  SfntTable glyf;
};

// Appends a copy of each glyph of `originals`, with its outline and metrics. Returns false, with the tables
// unchanged, if they are broken or there would be too many glyphs.
[[nodiscard]] bool AppendGlyphCopies(GlyphTables& tables, std::span<const uint16_t> originals);

}  // namespace hdi
