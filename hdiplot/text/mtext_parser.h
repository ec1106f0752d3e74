// Parses MTEXT: its codes become spans of one look each, in paragraphs.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hdiplot/text/text_block.h"
#include "hdiplot/text/text_codes.h"

namespace hdiplot {

// Two texts one above the other, or on both sides of a slash. Either may be empty.
struct TextStack {
  enum class Form : uint8_t { kTolerance, kFraction, kDiagonal };
  std::u16string upper;
  std::u16string lower;
  Form form = Form::kTolerance;
};

// How a span is aligned with the tallest one beside it.
enum class SpanLevel : uint8_t { kBottom, kMiddle, kTop };

struct MTextSpan {
  std::u16string text;             // a tab has a span of its own
  std::optional<TextStack> stack;  // in place of the text
  TextLook look;
  LineMarks marks;
  SpanLevel level = SpanLevel::kBottom;
};

enum class ParagraphAlign : uint8_t { kByAttachment, kLeft, kCenter, kRight, kJustified, kDistributed };

struct TabStop {
  enum class Kind : uint8_t { kLeft, kCenter, kRight };
  double at = 0;
  Kind kind = Kind::kLeft;
};

// Lengths are in heights of the whole text's capitals, from the edges of its box.
struct ParagraphFormat {
  double left = 0;
  double right = 0;
  double first = 0;  // of the first line, from `left`
  ParagraphAlign align = ParagraphAlign::kByAttachment;
  std::vector<TabStop> tabs;
};

struct MTextParagraph {
  ParagraphFormat format;
  std::vector<MTextSpan> spans;
  bool startsColumn = false;  // by a column break before it
  double endHeight = 1;       // at the paragraph's end: the height of an empty one
};

// Unknown codes lose their backslash, and unmatched braces are ignored: every text can be parsed. Returns at
// least one paragraph.
[[nodiscard]] std::vector<MTextParagraph> ParseMText(std::string_view utf8, const TextLook& start);

}  // namespace hdiplot
