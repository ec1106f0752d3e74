// The system's font faces for hosts that lay out text: characters, widths and outlines. Only hosts need this;
// the driver uses font_services.h.
//
// Characters are single 16-bit units. Lengths are in ems, Y up, with the baseline at 0. Not thread-safe.
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

// A closed glyph contour: a start point, then three points per cubic curve, the last of them its end point.
// Straight sides are curves with their control points at one and two thirds. Contours are oriented so that
// the nonzero winding rule fills the glyph.
using GlyphContour = std::vector<GlyphPoint>;

// Heights of a face that does not provide them.
inline constexpr double kUsualCapHeight = 0.7;
inline constexpr double kUsualAscent = 0.75;
inline constexpr double kUsualDescent = -0.2;

// A face as its file has it, upright or not. Faces belong to the list of faces, which lives as long as the
// module; equal faces are the same object.
class FontFace {
 public:
  // "Family Style" as the system shows it, such as "DejaVu Sans Bold". Unique among all faces.
  [[nodiscard]] virtual const std::u16string& FullName() const = 0;
  // The family name shared by at most four faces (name ID 1 of the OpenType "name" table), in English if the
  // font has it.
  [[nodiscard]] virtual const std::u16string& Family() const = 0;
  // 400 is regular, 700 bold.
  [[nodiscard]] virtual int32_t Weight() const = 0;
  [[nodiscard]] virtual bool IsItalic() const = 0;

  [[nodiscard]] virtual bool HasCharacter(char16_t unit) const = 0;
  // Advance width; that of the missing-character glyph if the face lacks the character.
  [[nodiscard]] virtual double Advance(char16_t unit) const = 0;
  // Height of the capitals, and of the highest and the (negative) lowest letters, relative to the baseline.
  [[nodiscard]] virtual double CapHeight() const = 0;
  [[nodiscard]] virtual double Ascent() const = 0;
  [[nodiscard]] virtual double Descent() const = 0;
  // Empty for a blank and for an unreadable glyph.
  [[nodiscard]] virtual std::vector<GlyphContour> Outline(char16_t unit) const = 0;

 protected:
  ~FontFace() = default;
};

// Returns the face that `font` selects: the closest in slant and weight of the family it names, in any
// language of the face and ignoring case. If there is no such family, or it lacks the letters of a requested
// character set, the next best face, also by pitch and family class. Null on a system without faces.
[[nodiscard]] const FontFace* FindFace(const LOGFONTW& font);

// Returns whether a face of that family exists, so that FindFace need not substitute one.
[[nodiscard]] bool HasFamily(const std::u16string& family);

// Returns the best face for `font` that has the character, always the same one; null if there is none.
[[nodiscard]] const FontFace* FindFaceWith(char16_t unit, const LOGFONTW& font);

// Returns `font` with the family name by which FindFace finds `face`, and with the face's weight and slant if
// the name is not enough.
[[nodiscard]] LOGFONTW SelectingFont(const LOGFONTW& font, const FontFace& face);

}  // namespace hdi
