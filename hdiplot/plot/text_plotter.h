// Draws laid-out text: as text if the driver can show it, else as outlines or strokes over invisible text,
// which keeps it searchable.
#pragma once

#include <string_view>
#include <vector>

#include "hdiplot/plot/canvas.h"
#include "hdiplot/plot/styles.h"
#include "hdiplot/text/font_book.h"
#include "hdiplot/text/text_block.h"
#include "hdiplot/text/text_shaping.h"

namespace hdiplot {

// The position of a line of text on the sheet.
struct TextPlacement {
  Vec2 at;               // start of the base line, dots, Y down
  double angle = 0;      // of the base line, counter-clockwise on paper, radians
  double height = 0;     // of capitals, dots
  double unitWidth = 0;  // dots along the base line per height of capitals
  double oblique = 0;    // radians
  // The text is mirrored; the other values then place an unmirrored text over the same area.
  bool isMirrored = false;
};

// `map` takes heights of capitals, Y up, to dots, Y down.
[[nodiscard]] TextPlacement PlacementOf(const Affine& map);

class TextPlotter {
 public:
  // Keeps references to the first two. With `comments`, each stroked text gets a comment.
  TextPlotter(Canvas& canvas, FontBook& fonts, bool comments)
      : canvas_(canvas), fonts_(fonts), comments_(comments) {}

  // `map` takes the text entity's coordinates to dots; `penWidth`, in dots, is that of strokes.
  void Plot(const TextBlock& block, const Affine& map, const Style& style, uint32_t penWidth);

 private:
  // What all parts of a piece share.
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
  void DrawOutline(const Line& line, const std::vector<hdi::GlyphContour>& contours, const Affine& map);
  [[nodiscard]] bool HasComment(const Line& line) const { return comments_ && line.font.stroke != nullptr; }
  void NoteWords(const TextPiece& piece);
  void NoteDrawn(const Line& line);
  void WriteComment();

  Canvas& canvas_;
  FontBook& fonts_;
  bool comments_;
  // The stroked words of the current text.
  std::u16string words_;
  Box wordsArea_;                         // dots
  const TextPiece* lastWords_ = nullptr;  // the piece at the end of the words
  std::u16string drawn_;                  // reused, like the next two
  std::vector<double> advances_;
  std::vector<Vec2> points_;
};

}  // namespace hdiplot
