// The blocks of deflate data (RFC 1951), found without decompressing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace hdi::engine {

// Positions in bits; the first bit of a byte is its lowest (RFC 1951, 3.1.1).
struct FinalBlock {
  size_t begin;  // the bit that marks the block as the last one
  size_t end;    // one past the block's last bit
};

// The last block of `deflate`, which begins with a block. Nothing for bytes that are no deflate data or end
// before their last block does. Reads every code, as a block does not tell its length, but makes nothing of
// them: a fraction of the time of decompressing.
[[nodiscard]] std::optional<FinalBlock> FindFinalBlock(std::span<const uint8_t> deflate);

}  // namespace hdi::engine
