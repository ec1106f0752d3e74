// A laid out text: pieces and lines in a plane of its own, independent of the device. Made from an entity,
// its style and its fonts; drawn by the plotter.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "hdiplot/geometry/transform.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

// A font as a style or a text names it.
struct FontChoice {
  std::string family;       // of a TrueType font; overrides the files
  std::string fontFile;     // as in a style, with or without an extension and a directory
  std::string bigFontFile;  // for characters that a stroke font lacks
  bool bold = false;
  bool italic = false;
  bool operator==(const FontChoice&) const = default;
};

// A font's metrics. Lengths are in heights of its capitals, before any width factor. Characters are UTF-16
// units.
class TextFont {
 public:
  virtual ~TextFont() = default;

  [[nodiscard]] virtual double Advance(char16_t unit) const = 0;
  // Of the letters above the base line and, negative, below it.
  [[nodiscard]] virtual double Ascent() const = 0;
  [[nodiscard]] virtual double Descent() const = 0;
};

// Provides the fonts, with a substitute for one that is missing. Fonts live as long as their source, and the
// same choice returns the same object.
class FontSource {
 public:
  virtual ~FontSource() = default;

  [[nodiscard]] virtual const TextFont& FontFor(const FontChoice& choice) = 0;
};

struct TextLook {
  FontChoice font;
  double height = 1;                 // of capitals, in drawing units
  double widthFactor = 1;            // above 0
  double oblique = 0;                // radians, to the right
  double tracking = 1;               // factor on each advance; 1 is the font's own spacing
  std::optional<EntityColor> color;  // none: the entity's
  bool operator==(const TextLook&) const = default;
};

// Characters of one look on one base line, from `at` along the block's X axis, in logical order.
struct TextPiece {
  std::u16string text;
  Vec2 at;
  double width = 0;  // with width factor and tracking
  TextLook look;
};

// An underline, overline or fraction bar. The font and the height of capitals are those of its text and
// determine its thickness.
struct TextRule {
  Vec2 from, to;
  std::optional<EntityColor> color;
  FontChoice font;
  double height = 1;
};

// Drawn below a text, over its margins too.
struct TextPanel {
  Box area;
  MTextPanel look;
};

// In drawing units, Y up. `frame` takes them to the entity's coordinates; it rotates and mirrors.
struct TextBlock {
  std::vector<TextPiece> pieces;
  std::vector<TextRule> rules;
  Affine frame;
  std::optional<TextPanel> panel;
};

// `style` is that of the entity, or the standard one if the drawing has none of that name.
[[nodiscard]] TextBlock LayOutText(const TextEntity& entity, const TextStyle& style, FontSource& fonts);
[[nodiscard]] TextBlock LayOutMText(const MTextEntity& entity, const TextStyle& style, FontSource& fonts);
[[nodiscard]] TextBlock LayOutTolerance(const ToleranceEntity& entity, const TextStyle& style,
                                        FontSource& fonts);

}  // namespace hdiplot
