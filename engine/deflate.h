// Compression of content streams in the zlib form that FlateDecode takes (ISO 32000-1:2008, 7.4.4).
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace hdi::engine {

// The most bytes that Deflate needs for `size` bytes of input.
[[nodiscard]] size_t DeflateBound(size_t size);

// Compresses `bytes` into `out`, which has DeflateBound of room; the size of the result, 0 on failure.
[[nodiscard]] size_t Deflate(std::string_view bytes, std::span<uint8_t> out);

}  // namespace hdi::engine
