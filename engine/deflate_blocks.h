// Finds the blocks of deflate data (RFC 1951) without decompressing it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace hdi::engine {

// Positions in bits; the first bit of a byte is the lowest (RFC 1951, 3.1.1).
struct FinalBlock {
  size_t begin;  // the block's BFINAL bit
  size_t end;    // one past the block's last bit
};

// Returns the last block of `deflate`, which starts with a block; nothing if the bytes are not deflate data
// or are cut off. Since a block does not store its length, every code is read but not decoded: a fraction of
// the time of decompressing.
[[nodiscard]] std::optional<FinalBlock> FindFinalBlock(std::span<const uint8_t> deflate);

}  // namespace hdi::engine
