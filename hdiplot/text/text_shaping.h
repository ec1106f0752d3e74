// Scripts that run from right to left, for a driver that shapes nothing and only turns round each stretch of
// right-to-left units.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace hdiplot {

// Whether the text has nothing for the functions below to do.
[[nodiscard]] bool IsPlainLeftToRight(std::u16string_view text);

// Arabic letters in their joined forms, where `hasForm` says that the font has those. Stays in logical order.
[[nodiscard]] std::u16string JoinedLetters(std::u16string_view text,
                                           const std::function<bool(char16_t)>& hasForm);

struct DriverPart {
  std::u16string text;    // becomes `visual` when the driver has turned round its right-to-left stretches
  std::u16string visual;  // left to right, brackets mirrored
};

// The text, which comes in logical order, as parts that stand side by side from left to right. A new part
// begins at each space behind a right-to-left letter, since the driver would put that space before the
// letter.
[[nodiscard]] std::vector<DriverPart> DriverParts(std::u16string_view text);

}  // namespace hdiplot
