// Large blocks of memory.
#pragma once

#include <cstddef>
#include <cstdint>

namespace hdi {

// A block of `size` bytes of undefined content, null when there is none. A block of 2 MiB or more may come in
// pages of that size, so that filling it costs one fault of memory in place of hundreds.
[[nodiscard]] uint8_t* AllocateBlock(size_t size);

// Frees a block; null is none.
void FreeBlock(uint8_t* block);

}  // namespace hdi
