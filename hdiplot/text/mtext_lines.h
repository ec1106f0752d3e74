// Breaks a paragraph into lines of its width.
#pragma once

#include <vector>

#include "hdiplot/text/mtext_parser.h"

namespace hdiplot {

// The smallest unbreakable unit: part of one span, all blanks or none.
struct TextAtom {
  enum class Kind : uint8_t { kText, kBlank, kTab, kStack };
  const MTextSpan* span = nullptr;
  std::u16string_view text{};  // in the span
  double width = 0;            // 0 for a tab, whose width depends on its place
  Kind kind = Kind::kText;
  bool mayStartLine = false;
  double low = 0;  // the foot and the head, above the base line of the span
  double high = 0;
};

struct TextLineRange {
  size_t begin = 0;
  size_t end = 0;   // before the blanks at the end of the line
  size_t next = 0;  // start of the next line
};

// Tab stops in drawing units from the left edge of the text's box.
class TabRuler {
 public:
  // `height` is that of the capitals of the whole text.
  TabRuler(const ParagraphFormat& format, double height) : format_(format), height_(height) {}

  [[nodiscard]] TabStop After(double x) const;

 private:
  const ParagraphFormat& format_;
  double height_;
};

// The atoms keep pointers into the paragraph.
[[nodiscard]] std::vector<TextAtom> MeasureAtoms(const MTextParagraph& paragraph, FontSource& fonts);

// `height` is that of the capitals of the whole text; `boxWidth` 0: no wrapping. Returns at least one line. A
// word wider than the box has a line of its own.
[[nodiscard]] std::vector<TextLineRange> BreakLines(const std::vector<TextAtom>& atoms,
                                                    const ParagraphFormat& format, double height,
                                                    double boxWidth);

}  // namespace hdiplot
