// Large blocks of memory on Windows, where pages of 2 MiB take a privilege that a plotting user lacks.
#include "platform/memory.h"

#include <cstdlib>

namespace hdi {

uint8_t* AllocateBlock(size_t size) { return static_cast<uint8_t*>(std::malloc(size)); }

void FreeBlock(uint8_t* block) { std::free(block); }

}  // namespace hdi
