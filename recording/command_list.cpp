// The two arenas.
#include "recording/command_list.h"

#include <cstdlib>

#include "platform/memory.h"

namespace hdi {

constinit CommandArena recordArena{};
constinit CommandArena sideArena{};

void CommandArena::AddChunk(size_t size) {
  auto* chunk = static_cast<ArenaChunk*>(std::malloc(sizeof(ArenaChunk)));
  chunk->previous = current;
  newest = chunk;
  current = chunk;
  chunk->base = AllocateBlock(size);
  chunk->cursor = chunk->base;
  chunk->limit = chunk->base + size;
}

void ReleaseChunks(CommandArena& arena) {
  for (ArenaChunk* chunk = arena.newest; chunk != nullptr;) {
    ArenaChunk* previous = chunk->previous;
    FreeBlock(chunk->base);
    std::free(chunk);
    chunk = previous;
  }
  arena.newest = nullptr;
  arena.current = nullptr;
}

}  // namespace hdi
