// Compression by libdeflate, and the seam between pieces.
#include "engine/deflate.h"

#include <libdeflate.h>

#include <algorithm>
#include <array>
#include <new>

#include "engine/deflate_blocks.h"

namespace hdi::engine {
namespace {

// An empty stored block (RFC 1951, 3.2.4) takes three bits, padding to the next byte, and LEN and NLEN.
constexpr std::array<uint8_t, 4> kEmptyLength = {0x00, 0x00, 0xFF, 0xFF};
constexpr size_t kSeamSize = 1 + kEmptyLength.size();

int LevelOf(Compression compression) {
  switch (compression) {
    case Compression::kFast:
      return 2;
    case Compression::kNormal:
      return 5;
    case Compression::kSmall:
      return 10;
  }
  return 5;
}

// libdeflate always ends its data. Clears the end mark of the `size` bytes at `data`, which have room for a
// seam, pads to a byte boundary with an empty stored block, and returns the new size.
size_t Reopen(uint8_t* data, size_t size) {
  const auto block = FindFinalBlock({data, size});
  if (!block) throw std::bad_alloc();  // libdeflate's data is complete
  data[block->begin / 8] = static_cast<uint8_t>(data[block->begin / 8] & ~(1U << (block->begin % 8)));
  // The bits after the end are zero, as are the three header bits of the stored block.
  uint8_t* out = data + size;
  if (block->end + 3 > size * 8) *out++ = 0;
  out = std::ranges::copy(kEmptyLength, out).out;
  return static_cast<size_t>(out - data);
}

}  // namespace

void Deflater::FreeCompressor::operator()(libdeflate_compressor* compressor) const {
  libdeflate_free_compressor(compressor);
}

Deflater::Deflater(Compression compression) : level_(LevelOf(compression)) {}

Deflater::~Deflater() = default;

DeflatedPiece Deflater::Compress(std::string_view bytes, PiecePlace place) {
  if (compressor_ == nullptr) compressor_.reset(libdeflate_alloc_compressor(level_));
  if (compressor_ == nullptr) throw std::bad_alloc();
  const size_t bound = libdeflate_deflate_compress_bound(compressor_.get(), bytes.size()) + kSeamSize;
  if (bound > roomSize_) {
    room_ = std::make_unique_for_overwrite<uint8_t[]>(bound);
    roomSize_ = bound;
  }
  DeflatedPiece piece;
  piece.size =
      libdeflate_deflate_compress(compressor_.get(), bytes.data(), bytes.size(), room_.get(), roomSize_);
  if (place == PiecePlace::kInner) piece.size = Reopen(room_.get(), piece.size);
  piece.data = std::make_unique_for_overwrite<uint8_t[]>(piece.size);
  std::copy_n(room_.get(), piece.size, piece.data.get());
  piece.plainSize = bytes.size();
  piece.checksum = libdeflate_adler32(1, bytes.data(), bytes.size());
  return piece;
}

}  // namespace hdi::engine
