#include "hdiplot/text/text_setter.h"

#include <algorithm>
#include <cmath>

#include "hdiplot/geometry/clipping.h"
#include "hdiplot/text/text_parts.h"
#include "hdiplot/text/text_shaping.h"
#include "platform/unicode.h"

namespace hdiplot {

namespace {

// Whether the text has lead bytes of U+0600 to U+06FF.
bool HasArabic(const std::string& text) {
  return std::ranges::any_of(text, [](char c) { return c >= '\xD8' && c <= '\xDB'; });
}

}  // namespace

TextBlock TextSetter::Set(const TextEntity& text) {
  const TextStyle& style = StyleOf(text.style);
  if (!HasArabic(text.text)) return LayOutText(text, style, fonts_);
  TextEntity joined = text;
  joined.text = Joined(text.text, style);
  return LayOutText(joined, style, fonts_);
}

TextBlock TextSetter::Set(const MTextEntity& text) {
  const TextStyle& style = StyleOf(text.style);
  if (!HasArabic(text.text)) return LayOutMText(text, style, fonts_);
  MTextEntity joined = text;
  joined.text = Joined(text.text, style);
  return LayOutMText(joined, style, fonts_);
}

TextBlock TextSetter::Set(const ToleranceEntity& tolerance) {
  return LayOutTolerance(tolerance, StyleOf(tolerance.style), fonts_);
}

// To be called before the layout: joined letters have other widths. Codes in the text separate letters.
std::string TextSetter::Joined(const std::string& text, const TextStyle& style) const {
  const PlotFont font = fonts_.Find(FontOf(style));
  const OutlineFont* outline = font.outline != nullptr ? font.outline : font.stroke->BigFont();
  return hdi::ToUtf8(JoinedLetters(hdi::ToUtf16(text), [outline](char16_t unit) {
    return outline != nullptr && outline->FaceOf(unit) != nullptr;
  }));
}

const TextStyle& TextSetter::StyleOf(const std::string& name) const {
  static const TextStyle kBuiltIn;
  for (const std::string& candidate : {name, kStandardStyle}) {
    const auto found = drawing_.textStyles.find(candidate);
    if (found != drawing_.textStyles.end()) return found->second;
  }
  return kBuiltIn;
}

Affine PieceMap(const TextPiece& piece) {
  const TextLook& look = piece.look;
  return {look.height * look.widthFactor,
          0,
          look.height * std::tan(look.oblique),
          look.height,
          piece.at.x,
          piece.at.y};
}

Box BoxOf(const TextBlock& block, const Affine& map, FontSource& fonts) {
  const Affine whole = map * block.frame;
  Box box;
  for (const TextPiece& piece : block.pieces) {
    const TextFont& font = fonts.FontFor(piece.look.font);
    const double slant = std::tan(piece.look.oblique);
    for (const double height : {font.Ascent(), font.Descent()}) {
      const Vec2 start = piece.at + Vec2{slant * height, height} * piece.look.height;
      box.Add(whole(start));
      box.Add(whole(start + Vec2{piece.width, 0}));
    }
  }
  for (const TextRule& rule : block.rules) {
    box.Add(whole(rule.from));
    box.Add(whole(rule.to));
  }
  if (block.panel) {
    for (const Vec2 corner : CornersOf(block.panel->area)) box.Add(whole(corner));
  }
  return box;
}

}  // namespace hdiplot
