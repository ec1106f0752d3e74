// Large blocks of memory on Linux.
#include "platform/memory.h"

#include <sys/mman.h>

#include <cstdlib>

namespace hdi {
namespace {

constexpr size_t kHugePage = size_t{2} << 20;

}  // namespace

uint8_t* AllocateBlock(size_t size) {
  if (size < kHugePage) return static_cast<uint8_t*>(std::malloc(size));
  const size_t rounded = (size + kHugePage - 1) / kHugePage * kHugePage;
  void* block = std::aligned_alloc(kHugePage, rounded);
  if (block != nullptr) madvise(block, rounded, MADV_HUGEPAGE);  // optional: small pages work as well
  return static_cast<uint8_t*>(block);
}

void FreeBlock(uint8_t* block) { std::free(block); }

}  // namespace hdi
