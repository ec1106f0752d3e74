// Global memory blocks, for platforms without them.
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <unordered_map>

#include "platform/host_library.h"
#include "platform/memory.h"

namespace {

constexpr uint32_t kMovable = 0x2;
constexpr uint32_t kZeroed = 0x40;

struct Block {
  std::unique_ptr<void, hdi::MallocDeleter> memory;
  std::unique_ptr<char> handle;  // of a movable block: a unique address other than the memory's
  size_t size = 0;
  int32_t locks = 0;
};

// The live blocks by handle. The handle of a fixed block is its address.
struct Registry {
  std::mutex mutex;
  std::unordered_map<void*, Block> blocks;

  Block* Find(void* handle) {
    const auto found = blocks.find(handle);
    return found == blocks.end() ? nullptr : &found->second;
  }
};

Registry& Blocks() {
  static Registry registry;
  return registry;
}

}  // namespace

void* GlobalAlloc(uint32_t flags, size_t size) {
  // An empty block needs an address, too.
  const size_t bytes = size == 0 ? 1 : size;
  Block block;
  block.memory.reset((flags & kZeroed) != 0 ? std::calloc(bytes, 1) : std::malloc(bytes));
  if (!block.memory) return nullptr;
  if ((flags & kMovable) != 0) block.handle = std::make_unique<char>();
  block.size = size;
  void* handle = block.handle ? block.handle.get() : block.memory.get();
  const std::lock_guard lock(Blocks().mutex);
  Blocks().blocks.emplace(handle, std::move(block));
  return handle;
}

void* GlobalLock(void* handle) {
  const std::lock_guard lock(Blocks().mutex);
  Block* block = Blocks().Find(handle);
  if (block == nullptr) return nullptr;
  ++block->locks;
  return block->memory.get();
}

int32_t GlobalUnlock(void* handle) {
  const std::lock_guard lock(Blocks().mutex);
  Block* block = Blocks().Find(handle);
  if (block == nullptr) return 0;
  if (!block->handle) return 1;  // a fixed block is always locked
  if (block->locks > 0) --block->locks;
  return block->locks > 0 ? 1 : 0;
}

size_t GlobalSize(void* handle) {
  const std::lock_guard lock(Blocks().mutex);
  const Block* block = Blocks().Find(handle);
  return block == nullptr ? 0 : block->size;
}

void* GlobalFree(void* handle) {
  const std::lock_guard lock(Blocks().mutex);
  return Blocks().blocks.erase(handle) == 0 ? handle : nullptr;
}
