// Large blocks of memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace hdi {

// Returns an uninitialized block of `size` bytes, null if out of memory. Blocks of 2 MiB or more may use huge
// pages, so that filling one costs one page fault instead of hundreds.
[[nodiscard]] uint8_t* AllocateBlock(size_t size);

// Frees a block, which may be null.
void FreeBlock(uint8_t* block);

// Frees memory from malloc.
struct MallocDeleter {
  void operator()(void* memory) const { std::free(memory); }
};

// For vectors of many megabytes. Member names are those that the standard requires of an allocator.
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
