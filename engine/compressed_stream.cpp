// Splits a stream into pieces and joins the compressed pieces.
#include "engine/compressed_stream.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <new>

namespace hdi::engine {
namespace {

// Each piece costs a seam and cannot refer to the bytes before it: pieces of 1 MiB make a stream 0.05 %
// larger, pieces of 256 KiB 0.2 %. The first ones are small so that a page of ordinary size has several to
// share out.
constexpr size_t kSmallPiece = size_t{256} << 10;
constexpr size_t kSmallPiecesEnd = size_t{2} << 20;
constexpr size_t kLargePiece = size_t{1} << 20;

// RFC 1950, 2.2: deflate, a window of 32 KiB, a fast algorithm, no dictionary.
constexpr std::array<uint8_t, 2> kHeader = {0x78, 0x5E};
constexpr size_t kChecksumSize = 4;

}  // namespace

CompressedStream::~CompressedStream() {
  for (DeflateTask& piece : pieces_) pool_.Withdraw(piece);
}

size_t CompressedStream::PieceSizeAt(size_t position) {
  return position < kSmallPiecesEnd ? kSmallPiece : kLargePiece;
}

void CompressedStream::Append(const std::shared_ptr<const char[]>& owner, std::string_view bytes,
                              PiecePlace place) {
  std::list<DeflateTask> pieces;
  size_t position = plainSize_;
  while (bytes.size() >= 2 * PieceSizeAt(position)) {
    const size_t size = PieceSizeAt(position);
    pieces.emplace_back(bytes.substr(0, size), PiecePlace::kInner, owner);
    bytes.remove_prefix(size);
    position += size;
  }
  pieces.emplace_back(bytes, place, owner);
  plainSize_ = position + bytes.size();

  auto piece = pieces.begin();
  pieces_.splice(pieces_.end(), pieces);
  for (; piece != pieces_.end(); ++piece) pool_.Add(*piece);
}

void CompressedStream::KeepFirst(size_t size) noexcept {
  while (plainSize_ > size) {
    pool_.Withdraw(pieces_.back());
    plainSize_ -= pieces_.back().bytes.size();
    pieces_.pop_back();
  }
}

bool CompressedStream::IsDone() {
  return std::ranges::all_of(pieces_, [this](const DeflateTask& piece) { return pool_.IsDone(piece); });
}

size_t CompressedStream::Finish() {
  size_t size = kHeader.size() + kChecksumSize;
  for (DeflateTask& piece : pieces_) {
    pool_.Finish(piece);
    size += piece.piece.size;
  }
  return size;
}

void CompressedStream::CopyTo(std::span<uint8_t> out) const {
  auto end = std::ranges::copy(kHeader, out.begin()).out;
  uLong checksum = adler32(0, nullptr, 0);
  for (const DeflateTask& task : pieces_) {
    end = std::ranges::copy(task.piece.Bytes(), end).out;
    checksum = adler32_combine(checksum, task.piece.checksum, static_cast<z_off_t>(task.piece.plainSize));
  }
  for (int shift = 24; shift >= 0; shift -= 8) *end++ = static_cast<uint8_t>(checksum >> shift);
}

}  // namespace hdi::engine
