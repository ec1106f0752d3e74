// The codes that texts of one line and of paragraphs have in common: %%c and the like for characters, %%u and
// the like for lines along the text, and ^I and the like for what a DXF file cannot hold as it is.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hdiplot {

// What %%c stands for. Of the characters that look like a diameter it is the one that every Latin font has,
// and the one that people type when they search; U+2300 and U+2205 are in few fonts, and on few keyboards.
inline constexpr char16_t kDiameter = u'\u00d8';

// Lines drawn along a text.
struct LineMarks {
  bool under = false;
  bool over = false;
  bool strike = false;
  bool operator==(const LineMarks&) const = default;
};

struct PercentCode {
  size_t length = 0;                    // in units, 0: the text does not start with a code
  std::optional<char16_t> character{};  // in place of the code
  bool LineMarks::*toggled = nullptr;
};

// Reads a code at the start of the text. One that means nothing is the two signs alone, so that what follows
// them stays.
[[nodiscard]] PercentCode ReadPercentCode(std::u16string_view text);

// ^I, ^J and ^M become the control characters, a caret and a blank become a caret, and other carets stay.
[[nodiscard]] std::u16string WithoutCaretCodes(std::string_view utf8);

// Whether a character takes part in a line. Control characters do not.
[[nodiscard]] inline bool IsPrinted(char16_t unit) { return unit >= 0x20 && unit != 0x7f; }

struct MarkedText {
  std::u16string text;
  LineMarks marks;
};

// A text of one line without its codes, in pieces where the marks change. At least one piece.
[[nodiscard]] std::vector<MarkedText> ReadTextLine(std::string_view utf8);

}  // namespace hdiplot
