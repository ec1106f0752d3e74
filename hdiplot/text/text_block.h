// A text laid out: its pieces and lines in a plane of its own, before anybody thinks of the device. Layout
// makes it from an entity and its style, measuring with the fonts; the plotter draws it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "hdiplot/geometry/transform.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

// What a text says of its font.
struct FontChoice {
  std::string family;       // of a TrueType font; goes before the files
  std::string fontFile;     // as in a style, with or without an extension and a directory
  std::string bigFontFile;  // for characters that a stroke font lacks
  bool bold = false;
  bool italic = false;
  bool operator==(const FontChoice&) const = default;
};

// A font to measure with. Lengths are in heights of its capitals, before any width factor. Characters are
// 16-bit units.
class TextFont {
 public:
  virtual ~TextFont() = default;

  [[nodiscard]] virtual double Advance(char16_t unit) const = 0;
  // Of the highest and (negative) the lowest letters over the base line.
  [[nodiscard]] virtual double Ascent() const = 0;
  [[nodiscard]] virtual double Descent() const = 0;
};

// Where layout gets fonts. A font that is not there has a stand-in, so that there always is one. Fonts live
// as long as their source, and the same choice gives the same object.
class FontSource {
 public:
  virtual ~FontSource() = default;

  [[nodiscard]] virtual const TextFont& FontFor(const FontChoice& choice) = 0;
};

struct TextLook {
  FontChoice font;
  double height = 1;       // of capitals, in drawing units
  double widthFactor = 1;  // above 0
  double oblique = 0;      // radians, to the right
  double tracking = 1;     // 1 is the font's own spacing: each advance grows by (tracking - 1) * its width
  std::optional<EntityColor> color;  // none: the entity's
  bool operator==(const TextLook&) const = default;
};

// Characters in one look on one base line, from `at` along the block's X axis, in logical order.
struct TextPiece {
  std::u16string text;
  Vec2 at;
  double width = 0;  // with width factor and tracking
  TextLook look;
};

// An underline, overline or fraction bar. The font and the height of capitals are those of the text that it
// belongs to, whose strokes it resembles.
struct TextRule {
  Vec2 from, to;
  std::optional<EntityColor> color;
  FontChoice font;
  double height = 1;
};

// In drawing units, Y up. `frame` leads from here to the entity's coordinates; it turns and mirrors.
struct TextBlock {
  std::vector<TextPiece> pieces;
  std::vector<TextRule> rules;
  Affine frame;
};

// `style` is that of the entity, or the standard one where the drawing has none of that name.
[[nodiscard]] TextBlock LayOutText(const TextEntity& entity, const TextStyle& style, FontSource& fonts);
[[nodiscard]] TextBlock LayOutMText(const MTextEntity& entity, const TextStyle& style, FontSource& fonts);

}  // namespace hdiplot
