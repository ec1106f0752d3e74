// Right-to-left scripts, for a driver that does no shaping and only reverses each run of right-to-left units.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace hdiplot {

// Whether the functions below leave the text unchanged.
[[nodiscard]] bool IsPlainLeftToRight(std::u16string_view text);

// Replaces Arabic letters by their joined forms if `hasForm` is true for all of them. Keeps the logical
// order.
[[nodiscard]] std::u16string JoinedLetters(std::u16string_view text,
                                           const std::function<bool(char16_t)>& hasForm);

struct DriverPart {
  std::u16string text;    // becomes `visual` when the driver reverses its right-to-left runs
  std::u16string visual;  // left to right, brackets mirrored
};

// Splits a text in logical order into parts from left to right. A new part starts after each space that
// follows a right-to-left letter: the driver would move that space in front of the letter.
[[nodiscard]] std::vector<DriverPart> DriverParts(std::u16string_view text);

}  // namespace hdiplot
