// The faces that the system offers, as a host that lays out text sees them: which characters they have, how
// wide those are, what they look like. Only hosts need this; the driver has font_services.h.
//
// Characters are 16-bit units, taken one by one. Lengths are in ems, Y up, the base line at 0. All of this is
// for one thread at a time.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/records.h"

namespace hdi {

struct GlyphPoint {
  double x = 0;
  double y = 0;
};

// One closed contour of a glyph as a start and cubic curves: three points each behind the first, the last of
// them the curve's end. A straight side is a curve whose control points lie on it at a third and two thirds.
// Contours run so that the nonzero winding rule fills the glyph.
using GlyphContour = std::vector<GlyphPoint>;

// A face, upright or not as its file has it. Faces belong to the list of faces, which lives as long as the
// module; equal faces are the same object.
class FontFace {
 public:
  // "Family Style" as a system shows it, "DejaVu Sans Bold", and no two faces have the same.
  [[nodiscard]] virtual const std::u16string& FullName() const = 0;
  // The family name that at most four faces share (name 1 of the OpenType table "name"), in English where the
  // font has it so.
  [[nodiscard]] virtual const std::u16string& Family() const = 0;
  // 400 is regular, 700 bold.
  [[nodiscard]] virtual int32_t Weight() const = 0;
  [[nodiscard]] virtual bool IsItalic() const = 0;

  [[nodiscard]] virtual bool HasCharacter(char16_t unit) const = 0;
  // The advance width; that of the glyph for missing characters when the face has no such character.
  [[nodiscard]] virtual double Advance(char16_t unit) const = 0;
  // Heights of the face above the base line: of its capitals, of its highest and (negative) lowest letters.
  [[nodiscard]] virtual double CapHeight() const = 0;
  [[nodiscard]] virtual double Ascent() const = 0;
  [[nodiscard]] virtual double Descent() const = 0;
  // Empty for a blank, and for a glyph that can't be read.
  [[nodiscard]] virtual std::vector<GlyphContour> Outline(char16_t unit) const = 0;

 protected:
  ~FontFace() = default;
};

// The face that `font` selects: of the family that it names (in any language that a face names itself in,
// without regard to case) the closest in slant and weight. When there is no such family, or it lacks the
// letters of a character set that is asked for, the next best one, by pitch and class of family too. Null on
// a system without faces.
[[nodiscard]] const FontFace* FindFace(const LOGFONTW& font);

// Whether there is a face of that family, so that FindFace has no need of another one.
[[nodiscard]] bool HasFamily(const std::u16string& family);

// The next best face for `font` that has the character, the same one every time; null when none has it.
[[nodiscard]] const FontFace* FindFaceWith(char16_t unit, const LOGFONTW& font);

// `font` with the family name by which FindFace gives `face`, and with the face's weight and slant where the
// name alone is not enough.
[[nodiscard]] LOGFONTW SelectingFont(const LOGFONTW& font, const FontFace& face);

}  // namespace hdi
