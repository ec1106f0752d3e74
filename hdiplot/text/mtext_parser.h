// Reads the formatting codes of a text of paragraphs: what it says, span by span, and how each of them looks.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hdiplot/text/text_block.h"
#include "hdiplot/text/text_codes.h"

namespace hdiplot {

// What lies one above the other, or to both sides of a slash. A part may be empty.
struct TextStack {
  enum class Form : uint8_t { kTolerance, kFraction, kDiagonal };
  std::u16string upper;
  std::u16string lower;
  Form form = Form::kTolerance;
};

// Which line of a span is level with that of the tallest one beside it.
enum class SpanLevel : uint8_t { kBottom, kMiddle, kTop };

struct MTextSpan {
  std::u16string text;             // a tab is a span of its own
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
  double endHeight = 1;  // in force at the paragraph's end, which is all that an empty one has
};

// Codes that mean nothing lose their backslash, and braces without a partner are passed over: there is no
// text that cannot be read. Always one paragraph at least.
[[nodiscard]] std::vector<MTextParagraph> ParseMText(std::string_view utf8, const TextLook& start);

}  // namespace hdiplot
