// On Linux the parent is the window handle itself.
#include "tests/border/parent.h"

namespace border {

uint64_t WindowOf(const void* parent) { return reinterpret_cast<uintptr_t>(parent); }

}  // namespace border
