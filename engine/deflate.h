// Compresses a piece of a stream as deflate data (RFC 1951).
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

#include "engine/compression.h"

struct libdeflate_compressor;

namespace hdi::engine {

// An inner piece can be followed by another; the last one ends the data.
enum class PiecePlace : uint8_t { kInner, kLast };

struct DeflatedPiece {
  std::unique_ptr<uint8_t[]> data;
  size_t size = 0;
  size_t plainSize = 0;
  uint32_t checksum = 0;  // Adler-32 of the plain bytes (RFC 1950, 8.2)

  [[nodiscard]] std::span<const uint8_t> Bytes() const { return {data.get(), size}; }
};

// Keeps its buffers between pieces. Not thread-safe.
class Deflater {
 public:
  explicit Deflater(Compression compression);
  Deflater(const Deflater&) = delete;
  Deflater& operator=(const Deflater&) = delete;
  ~Deflater();

  // The result depends only on the bytes and the place. Throws std::bad_alloc.
  [[nodiscard]] DeflatedPiece Compress(std::string_view bytes, PiecePlace place);

 private:
  struct FreeCompressor {
    void operator()(libdeflate_compressor* compressor) const;
  };

  int level_;
  std::unique_ptr<libdeflate_compressor, FreeCompressor> compressor_;
  std::unique_ptr<uint8_t[]> room_;
  size_t roomSize_ = 0;
};

}  // namespace hdi::engine
