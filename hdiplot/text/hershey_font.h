// Reads the Hershey fonts in the form that James Hurt gave them, files ending in .jhf.
#pragma once

#include <string_view>
#include <vector>

#include "hdiplot/text/stroke_glyph.h"

namespace hdiplot {

// The glyphs of a font by its name, "rowmans": that of the space, U+0020, then those of the characters behind
// it. Empty when there is no such font. Where a file is broken, the glyphs before that place.
[[nodiscard]] std::vector<StrokeGlyph> ReadHersheyFont(std::string_view name);

}  // namespace hdiplot
