// Stroke fonts, which replace shape fonts: the Hershey fonts, completed by drawn symbols and an outline font.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "hdiplot/text/outline_font.h"
#include "hdiplot/text/stroke_glyphs.h"
#include "hdiplot/text/text_block.h"

namespace hdiplot {

// Not thread-safe.
class StrokeFont final : public TextFont {
 public:
  // A Hershey font by its name, "rowmans". One that is not installed has no strokes. `bigFont`, which may be
  // null and must outlive this, draws characters without strokes.
  StrokeFont(const std::string& hersheyName, bool monospaced, const OutlineFont* bigFont);

  [[nodiscard]] static bool Exists(const std::string& hersheyName);

  [[nodiscard]] double Advance(char16_t unit) const override;
  [[nodiscard]] double Ascent() const override { return ascent_; }
  [[nodiscard]] double Descent() const override { return descent_; }

  // Null when `unit` has no strokes; BigFont draws it.
  [[nodiscard]] const StrokeGlyph* Strokes(char16_t unit) const;
  [[nodiscard]] const OutlineFont* BigFont() const { return bigFont_; }
  // How the big font draws a character: enlarged by `scale`, and raised by heights of capitals.
  struct BigForm {
    double scale = 1;
    double rise = 0;
  };
  [[nodiscard]] BigForm BigFormOf(char16_t unit) const;

 private:
  using Alphabet = std::vector<StrokeGlyph>;  // from the space on

  [[nodiscard]] std::unique_ptr<StrokeGlyph> Make(char16_t unit) const;
  [[nodiscard]] std::unique_ptr<StrokeGlyph> MakeAccented(char16_t unit) const;

  Alphabet own_, latin_, greek_, cyrillic_, transliterated_;
  const OutlineFont* bigFont_;
  bool monospaced_;
  double ascent_ = 1;
  double descent_ = 0;
  mutable UnitTable<std::unique_ptr<StrokeGlyph>> glyphs_;
};

}  // namespace hdiplot
