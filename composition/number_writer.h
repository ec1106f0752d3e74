// Numbers of the content stream (ISO 32000-1:2008, 7.3.3), without any locale.
//
// WriteReal takes every input and writes no exponent, which PDF does not know.
//
// How many decimals a number gets follows from what it measures. Objects are in dots and a device has at most
// a few thousand dots an inch, so five decimals of a dot are far below anything that shows; font sizes take
// three; a line width is written with all the digits that an f32 holds, so that a reader gets the very value.
#pragma once

#include <cstddef>

namespace hdi {

inline constexpr int kPointPrecision = 5;     // path points and matrices
inline constexpr int kFontSizePrecision = 3;  // the size of Tf
inline constexpr int kUnlimited = -1;         // the line width of w

// The longest text of one number: a sign, a point, the zeros of the smallest f32 and nine digits.
inline constexpr size_t kMaxNumberLength = 64;

// WriteReal for a value that is a whole number of magnitude below 2^24, at any precision.
char* WriteWhole(char* out, float value);

// Whether WriteWhole serves for `value`.
[[nodiscard]] inline bool IsSmallWhole(float value) {
  constexpr float kLimit = 16777216.0F;
  return value > -kLimit && value < kLimit && static_cast<float>(static_cast<int>(value)) == value;
}

// WriteReal for any other value.
char* WriteFraction(char* out, float value, int precision);

// Writes `value` at `out`, which has room for kMaxNumberLength, and returns the end of the text. At most
// `precision` decimals, or with kUnlimited as many as an f32 needs; no zero before the point. Infinities
// become the largest finite f32, a not-a-number becomes 0. Most coordinates of a plot are whole dots, so
// these take a road of their own.
inline char* WriteReal(char* out, float value, int precision) {
  return IsSmallWhole(value) ? WriteWhole(out, value) : WriteFraction(out, value, precision);
}

// Writes `value` with six significant digits, trailing zeros dropped, in the manner of %g: colour components,
// dash entries, character spacing and horizontal scale. Room and result as above. Where %g has an exponent,
// which a PDF can't hold (ISO 32000-1:2008, 7.3.3), the same digits stand in full; infinities count as the
// largest numbers, and what is not a number as 0.
char* WriteSixDigits(char* out, float value);

}  // namespace hdi
