// Draws laid-out text: as text where the driver can show it so, else as outlines or strokes over text that is
// only there to be searched for.
#pragma once

#include <string_view>
#include <vector>

#include "hdiplot/plot/canvas.h"
#include "hdiplot/plot/styles.h"
#include "hdiplot/text/font_book.h"
#include "hdiplot/text/text_block.h"
#include "hdiplot/text/text_shaping.h"

namespace hdiplot {

// How a line of text lies on the sheet.
struct TextPlacement {
  Vec2 at;               // where the base line begins, dots, Y down
  double angle = 0;      // of the base line, counter-clockwise as seen, radians
  double height = 0;     // of capitals, dots
  double unitWidth = 0;  // along the base line, dots for a height of capitals
  double oblique = 0;    // radians
  // The text itself is mirrored; the rest then places a text that is not so that it covers the same area.
  bool isMirrored = false;
};

// `map` leads from heights of capitals, Y up, to dots, Y down.
[[nodiscard]] TextPlacement PlacementOf(const Affine& map);

class TextPlotter {
 public:
  // Refers to the first two from then on. With `comments` each text in strokes has its words in a comment,
  // too.
  TextPlotter(Canvas& canvas, FontBook& fonts, bool comments)
      : canvas_(canvas), fonts_(fonts), comments_(comments) {}

  // `map` leads from the text entity's coordinates to dots; `penWidth`, in dots, is that of strokes.
  void Plot(const TextBlock& block, const Affine& map, const Style& style, uint32_t penWidth);

 private:
  // What the parts of a piece have in common.
  struct Line {
    const TextPiece& piece;
    PlotFont font;
    const TextFont& measure;
    Affine map;
    TextPlacement placement;
    Rgb color;
    uint32_t penWidth;
  };

  void PlotPiece(const TextPiece& piece, const Affine& map, Rgb color, uint32_t penWidth);
  void PlotRules(const TextBlock& block, const Affine& map, const Style& style, uint32_t penWidth);
  // Lengths `along` the base line are heights of capitals.
  [[nodiscard]] bool ShowText(const Line& line, std::u16string_view text, double along);
  void HideText(const Line& line, std::u16string_view text, double along);
  void DrawGlyphs(const Line& line, std::u16string_view visual, double along);
  void DrawOutline(const Line& line, const std::vector<hdi::GlyphContour>& contours, double along);
  [[nodiscard]] bool HasComment(const Line& line) const { return comments_ && line.font.stroke != nullptr; }
  void NoteWords(const TextPiece& piece);
  void NoteDrawn(const Line& line);
  void WriteComment();

  Canvas& canvas_;
  FontBook& fonts_;
  bool comments_;
  // Of the text in hand: what of it is in strokes.
  std::u16string words_;
  Box wordsArea_;                         // dots
  const TextPiece* lastWords_ = nullptr;  // the piece at the end of the words
  std::u16string drawn_;                  // kept for their memory
  std::vector<double> advances_;
  std::vector<Vec2> points_;
};

}  // namespace hdiplot
