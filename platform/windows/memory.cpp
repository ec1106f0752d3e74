// Large blocks of memory on Windows. Huge pages require a privilege that users do not have.
#include "platform/memory.h"

#include <cstdlib>

namespace hdi {

uint8_t* AllocateBlock(size_t size) { return static_cast<uint8_t*>(std::malloc(size)); }

void FreeBlock(uint8_t* block) { std::free(block); }

}  // namespace hdi
