// Lays out single lines: alignment, stretching, and the columns of vertical styles.
#include <numeric>

#include "hdiplot/text/text_parts.h"

namespace hdiplot {
namespace {

bool IsBetweenPoints(const TextEntity& entity) {
  return entity.align == TextAlign::kAligned || entity.align == TextAlign::kFit;
}

// The part of the text that lies before its place.
double PartBefore(TextAlign align) {
  switch (align) {
    case TextAlign::kCenter:
    case TextAlign::kMiddle:
      return 0.5;
    case TextAlign::kRight:
      return 1;
    default:
      return 0;
  }
}

// Backwards and upside down mirror about the insertion point. A text between two points stays between them.
Affine BlockMap(const TextEntity& entity) {
  Vec2 right = entity.right;
  Vec2 up = entity.up;
  Vec2 origin = entity.place;
  const Vec2 run = entity.end - entity.place;
  const double length = Length(run);
  if (IsBetweenPoints(entity) && length > 0 && std::isfinite(length)) {
    const double side = Cross(right, up) < 0 ? -1 : 1;
    right = run * (1 / length);
    up = TurnedLeft(right) * side;
    if (entity.backwards) origin = entity.end;
  }
  return Affine::OfAxes(right * (entity.backwards ? -1 : 1), up * (entity.upsideDown ? -1 : 1), origin);
}

// Aligned texts are scaled to fill the distance, fitted ones in width only.
void Stretch(const TextEntity& entity, double naturalWidth, TextLook& look) {
  const double factor = Length(entity.end - entity.place) / naturalWidth;
  if (!IsBetweenPoints(entity) || !(factor > 0) || !std::isfinite(factor)) return;
  if (entity.align == TextAlign::kAligned) {
    look.height = UsableHeight(look.height * factor);
  } else {
    look.widthFactor = UsableFactor(look.widthFactor * factor);
  }
}

// The Y of the base line, from the insertion point.
double BaseLine(const TextEntity& entity, const TextFont& font, double height) {
  if (entity.align == TextAlign::kMiddle) return -height * (1 + font.Descent()) / 2;
  switch (entity.line) {
    case TextLine::kBottom:
      return -height * font.Descent();
    case TextLine::kMiddle:
      return -height / 2;
    case TextLine::kTop:
      return -height;
    default:
      return 0;
  }
}

TextBlock LayOutAlong(const TextEntity& entity, const std::vector<MarkedText>& marked,
                      const std::u16string& text, const TextFont& font, TextLook look) {
  Stretch(entity, WidthOf(text, font, look), look);
  const double width = WidthOf(text, font, look);
  const Vec2 start{-PartBefore(entity.align) * width, BaseLine(entity, font, look.height)};
  TextBlock block;
  block.frame = BlockMap(entity);
  if (!HasOnlyBlanks(text)) block.pieces.push_back({text, start, width, look});
  Vec2 at = start;
  for (const MarkedText& piece : marked) {
    const double end = at.x + WidthOf(piece.text, font, look);
    AddRules(piece.marks, at, end, look, block.rules);
    at.x = end;
  }
  return block;
}

// The insertion point is above the middle of the first character, or at the justification's place in the
// column.
TextBlock LayOutDownward(const TextEntity& entity, std::u16string_view text, const TextFont& font,
                         const TextLook& look) {
  TextColumn column;
  column.Add(text, font, look);
  TextBlock block;
  block.frame = BlockMap(entity);
  column.WriteTo(block, {0, PartBefore(entity.align) * column.Length()});
  return block;
}

}  // namespace

TextBlock LayOutText(const TextEntity& entity, const TextStyle& style, FontSource& fonts) {
  const std::vector<MarkedText> marked = ReadTextLine(entity.text);
  const std::u16string text = std::accumulate(
      marked.begin(), marked.end(), std::u16string(),
      [](std::u16string all, const MarkedText& piece) { return std::move(all) + piece.text; });
  const TextLook look = StartLook(style, entity.height, entity.widthFactor, entity.oblique);
  const TextFont& font = fonts.FontFor(look.font);
  return style.vertical ? LayOutDownward(entity, text, font, look)
                        : LayOutAlong(entity, marked, text, font, look);
}

}  // namespace hdiplot
