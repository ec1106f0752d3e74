// Large blocks of memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>

namespace hdi {

// A block of `size` bytes of undefined content, null when there is none. A block of 2 MiB or more may come in
// pages of that size, so that filling it costs one fault of memory in place of hundreds.
[[nodiscard]] uint8_t* AllocateBlock(size_t size);

// Frees a block; null is none.
void FreeBlock(uint8_t* block);

// For vectors that grow to many megabytes. Its names are those that the standard asks of an allocator.
template <typename Value>
struct BlockAllocator {
  using value_type = Value;

  BlockAllocator() = default;
  template <typename Other>
  explicit(false) BlockAllocator(const BlockAllocator<Other>& /*other*/) {}

  [[nodiscard]] Value* allocate(size_t count) {  // NOLINT(readability-identifier-naming)
    uint8_t* block = count > SIZE_MAX / sizeof(Value) ? nullptr : AllocateBlock(count * sizeof(Value));
    if (block == nullptr) throw std::bad_alloc();
    return reinterpret_cast<Value*>(block);
  }
  void deallocate(Value* values, size_t /*count*/) {  // NOLINT(readability-identifier-naming)
    FreeBlock(reinterpret_cast<uint8_t*>(values));
  }

  bool operator==(const BlockAllocator&) const = default;
};

}  // namespace hdi
