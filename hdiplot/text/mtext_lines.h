// Cuts a paragraph into lines that keep within its width.
#pragma once

#include <vector>

#include "hdiplot/text/mtext_parser.h"

namespace hdiplot {

// The least that stays together: part of one span, all blanks or none.
struct TextAtom {
  enum class Kind : uint8_t { kText, kBlank, kTab, kStack };
  const MTextSpan* span = nullptr;
  std::u16string_view text{};  // in the span
  double width = 0;            // a tab's depends on its place
  Kind kind = Kind::kText;
  bool mayStartLine = false;
  double low = 0;  // foot and head over the base line of the span
  double high = 0;
};

struct TextLineRange {
  size_t begin = 0;
  size_t end = 0;   // blanks at the end of the line lie behind it
  size_t next = 0;  // where the next line begins
};

// Where tabs lead, in drawing units from the left edge of the text's box.
class TabRuler {
 public:
  // `height` is that of the whole text's capitals.
  TabRuler(const ParagraphFormat& format, double height) : format_(format), height_(height) {}

  [[nodiscard]] TabStop After(double x) const;

 private:
  const ParagraphFormat& format_;
  double height_;
};

// The atoms refer to the paragraph.
[[nodiscard]] std::vector<TextAtom> MeasureAtoms(const MTextParagraph& paragraph, FontSource& fonts);

// `height` is that of the whole text's capitals, `boxWidth` 0 where lines do not wrap. At least one line. A
// word that is wider than the line has one to itself.
[[nodiscard]] std::vector<TextLineRange> BreakLines(const std::vector<TextAtom>& atoms,
                                                    const ParagraphFormat& format, double height,
                                                    double boxWidth);

}  // namespace hdiplot
