// The order in which right-to-left text is drawn.
#pragma once

#include <cstdint>

namespace hdi {

// Reverses, in place, each right-to-left stretch of `text` and the same stretches of `advances`, which may be
// null. A stretch goes from its first right-to-left unit to the unit before the next one that is neither
// right-to-left nor a blank, or to the end: blanks behind its last letter belong to it, blanks before its
// first do not. Units are taken one by one; there are no embedding levels, no mirroring and no shaping.
void ReverseRightToLeft(char16_t* text, int32_t count, double* advances);

}  // namespace hdi
