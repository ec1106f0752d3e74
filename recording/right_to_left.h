// Visual order of right-to-left text.
#pragma once

#include <cstdint>

namespace hdi {

// Reverses, in place, each right-to-left run of `text` and the same runs of `advances`, which may be null. A
// run extends from its first right-to-left unit to the unit before the next one that is neither right-to-left
// nor a blank, or to the end: blanks after its last letter belong to it, blanks before its first do not.
// Works on single UTF-16 units, without embedding levels, mirroring or shaping.
void ReverseRightToLeft(char16_t* text, int32_t count, double* advances);

}  // namespace hdi
