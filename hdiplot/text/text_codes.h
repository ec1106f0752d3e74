// The codes that single lines and paragraphs share: %%c and others for characters, %%u and others for lines
// along the text, ^I and others for control characters.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hdiplot {

// %%c. Of the characters that look like a diameter sign, the one that every Latin font has and that users
// type in a search; few fonts have U+2300 or U+2205.
inline constexpr char16_t kDiameter = u'\u00d8';

// Lines drawn along a text.
struct LineMarks {
  bool under = false;
  bool over = false;
  bool strike = false;
  bool operator==(const LineMarks&) const = default;
};

struct PercentCode {
  size_t length = 0;                    // units; 0: the text does not start with a code
  std::optional<char16_t> character{};  // in place of the code
  bool LineMarks::*toggled = nullptr;
};

// Reads a code at the start of the text. An unknown code is the two percent signs alone: what follows them is
// text.
[[nodiscard]] PercentCode ReadPercentCode(std::u16string_view text);

// Resolves ^I, ^J and ^M to control characters and "^ " to a caret. Other carets stay.
[[nodiscard]] std::u16string WithoutCaretCodes(std::string_view utf8);

[[nodiscard]] inline bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

// Whether a character is text; control characters are not.
[[nodiscard]] inline bool IsPrinted(char16_t unit) { return unit >= 0x20 && unit != 0x7f; }

// Ideographs, kana and their punctuation, which have one width and allow a line break around them. The
// surrogates are those of the ideographic planes.
[[nodiscard]] inline bool IsIdeograph(char16_t unit) {
  return (unit >= 0x2e80 && unit < 0xa000) || (unit >= 0xf900 && unit < 0xfb00) ||
         (unit >= 0xff00 && unit < 0xfff0) || (unit >= 0xd840 && unit < 0xd890);
}

// Removes a number from the start of the text. None, and nothing removed, if there is no number.
[[nodiscard]] std::optional<double> TakeNumber(std::u16string_view& text);

// Removes `digits` hexadecimal digits from the start of the text. None, and nothing removed, if there are
// fewer.
[[nodiscard]] std::optional<uint32_t> TakeHexadecimal(std::u16string_view& text, size_t digits);

// A text without the codes for characters, and without the backslashes before others.
[[nodiscard]] std::u16string PlainText(std::u16string_view value);

struct MarkedText {
  std::u16string text;
  LineMarks marks;
};

// A single line without its codes, split where the marks change. At least one piece.
[[nodiscard]] std::vector<MarkedText> ReadTextLine(std::string_view utf8);

}  // namespace hdiplot
