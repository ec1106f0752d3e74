// The glyphs of one font, read by FreeType without hinting and without scaling.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/font_faces.h"

namespace hdi {

// Lengths in ems. A font that can't be opened has no characters, and its glyphs have no width and no outline.
class FontGlyphs {
 public:
  FontGlyphs(const std::string& path, uint32_t memberIndex);
  FontGlyphs(const FontGlyphs&) = delete;
  FontGlyphs& operator=(const FontGlyphs&) = delete;
  ~FontGlyphs();

  // The glyph for a character, 0 (the glyph for missing ones) when there is none. In a font with a Microsoft
  // symbol map a character below 0x100 also stands for the one at 0xF000 beyond it.
  [[nodiscard]] uint16_t GlyphOf(char16_t unit) const { return glyphs_[unit]; }

  [[nodiscard]] double Advance(uint16_t glyph) const;
  [[nodiscard]] std::vector<GlyphContour> Outline(uint16_t glyph) const;

  // Of the capitals, above the base line.
  [[nodiscard]] double CapHeight() const { return capHeight_; }
  // Of the highest and (negative) the lowest letters.
  [[nodiscard]] double Ascent() const { return ascent_; }
  [[nodiscard]] double Descent() const { return descent_; }

 private:
  struct Face;

  void ReadCharacterMaps();
  void ReadAdvances();
  void Measure();

  std::unique_ptr<Face> face_;  // null when it can't be opened
  std::vector<uint16_t> glyphs_;
  std::vector<uint16_t> advances_;  // in font units; the last one holds for all glyphs behind it
  double unitsPerEm_ = 1;
  double capHeight_;
  double ascent_;
  double descent_;
};

}  // namespace hdi
