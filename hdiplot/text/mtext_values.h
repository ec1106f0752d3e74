// The values behind formatting codes: fonts, paragraph properties, stacks.
#pragma once

#include <optional>
#include <string_view>

#include "hdiplot/text/mtext_parser.h"

namespace hdiplot {

// Takes a number off the start of the text; none if there is no number there.
[[nodiscard]] std::optional<double> TakeNumber(std::u16string_view& text);

// Takes `digits` hexadecimal digits off the start of the text; none, and nothing taken, if there are fewer.
[[nodiscard]] std::optional<uint32_t> TakeHexadecimal(std::u16string_view& text, size_t digits);

// Changes a font as "Family|b1|i0|c0|p34", "file.shx" or "file.shx,big.shx" has it. `isFile` tells what a
// name without an extension is.
void ReadFont(std::u16string_view value, bool isFile, FontChoice& font);

// Changes a format as "i-2,l2,qc,t4,c8,r12" has it. Properties of no use here are passed over.
void ReadParagraphFormat(std::u16string_view value, ParagraphFormat& format);

// The parts of "1/2", "+0.1^-0.2" or "3#4". None without one of these three signs.
[[nodiscard]] std::optional<TextStack> ReadStack(std::u16string_view value);

// A text without the codes for characters, and without the backslashes before others.
[[nodiscard]] std::u16string PlainText(std::u16string_view value);

}  // namespace hdiplot
