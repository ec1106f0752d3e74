// The glyphs of a font, read by FreeType without hinting or scaling.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/font_faces.h"

namespace hdi {

// Lengths are in ems. A font that cannot be opened has no characters, and glyphs without width or outline.
class FontGlyphs {
 public:
  FontGlyphs(const std::string& path, uint32_t memberIndex);
  FontGlyphs(const FontGlyphs&) = delete;
  FontGlyphs& operator=(const FontGlyphs&) = delete;
  ~FontGlyphs();

  // Returns the glyph of a character, or 0, the missing-character glyph. In a font with a Microsoft symbol
  // map, characters below 0x100 also stand for those from 0xF000.
  [[nodiscard]] uint16_t GlyphOf(char16_t unit) const { return glyphs_[unit]; }

  [[nodiscard]] double Advance(uint16_t glyph) const;
  [[nodiscard]] std::vector<GlyphContour> Outline(uint16_t glyph) const;

  // Height of the capitals above the baseline.
  [[nodiscard]] double CapHeight() const { return capHeight_; }
  // Of the highest and the (negative) lowest letters.
  [[nodiscard]] double Ascent() const { return ascent_; }
  [[nodiscard]] double Descent() const { return descent_; }

 private:
  struct Face;

  void ReadCharacterMaps();
  void ReadAdvances();
  void Measure();

  std::unique_ptr<Face> face_;  // null if the font cannot be opened
  std::vector<uint16_t> glyphs_;
  std::vector<uint16_t> advances_;  // in font units; the last one applies to all later glyphs
  double unitsPerEm_ = 1;
  double capHeight_;
  double ascent_;
  double descent_;
};

}  // namespace hdi
