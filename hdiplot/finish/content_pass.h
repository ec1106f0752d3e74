// Makes a page's content conform to PDF/A (ISO 19005-2:2011): 6.1.13 limits, 6.2.2 operators, 6.2.11.8
// glyphs.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace hdiplot {

struct FontFacts {
  uint32_t glyphCount = 0;
  double missingGlyphWidth = 0;  // of glyph 0, in thousandths of the font size, as the font dictionary says
};
using FontsByName = std::map<std::string, FontFacts, std::less<>>;  // without the slash

struct ConformingContent {
  std::optional<std::string> content;  // none: it conforms as it is
  uint64_t glyphsLeftOut = 0;          // visible ones
};

// Expects content as the driver writes it: text in hexadecimal strings of two-byte glyph numbers, no inline
// images, colours in DeviceGray and DeviceRGB. Leaves out "q" without its "Q" and the other way round, which
// changes nothing on the page, and glyph 0, whose advance stays. Throws NoPdfA for what cannot be mended.
[[nodiscard]] ConformingContent ConformContent(std::string_view content, const FontsByName& fonts);

}  // namespace hdiplot
