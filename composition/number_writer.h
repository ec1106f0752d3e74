// Writes numbers of the content stream (ISO 32000-1:2008, 7.3.3), independent of the locale.
//
// PDF has no exponents, so none is ever written.
//
// The precision depends on the quantity. Objects are in dots, at most a few thousand an inch, so five
// decimals of a dot are far below anything visible; font sizes get three; a line width gets all digits of an
// f32, so that a reader recovers the exact value.
#pragma once

#include <cstddef>

namespace hdi {

inline constexpr int kPointPrecision = 5;     // path points and matrices
inline constexpr int kFontSizePrecision = 3;  // operand of Tf
inline constexpr int kUnlimited = -1;         // operand of w

// The longest number: a sign, a point, the zeros of the smallest f32 and nine digits.
inline constexpr size_t kMaxNumberLength = 64;

// WriteReal for a whole number of magnitude below 2^24, at any precision.
char* WriteWhole(char* out, float value);

// Whether WriteWhole handles `value`.
[[nodiscard]] inline bool IsSmallWhole(float value) {
  constexpr float kLimit = 16777216.0F;
  return value > -kLimit && value < kLimit && static_cast<float>(static_cast<int>(value)) == value;
}

// WriteReal for any other value.
char* WriteFraction(char* out, float value, int precision);

// Writes `value` at `out`, which has room for kMaxNumberLength, and returns the end of the text. At most
// `precision` decimals, or as many as an f32 needs with kUnlimited; no zero before the point. Infinities
// become the largest finite f32, NaN becomes 0. Most coordinates of a plot are whole dots and take a fast
// path.
inline char* WriteReal(char* out, float value, int precision) {
  return IsSmallWhole(value) ? WriteWhole(out, value) : WriteFraction(out, value, precision);
}

// Writes `value` with six significant digits and no trailing zeros, like %g: colour components, dash entries,
// character spacing and horizontal scale. Room and result as above. Where %g has an exponent, which PDF does
// not allow (ISO 32000-1:2008, 7.3.3), the same digits are written in full. Infinities become the largest
// finite f32, NaN becomes 0.
char* WriteSixDigits(char* out, float value);

}  // namespace hdi
