// A FlateDecode stream (ISO 32000-1:2008, 7.4.4) that is compressed while it is still being written.
//
// Pieces are compressed independently and joined to one zlib stream (RFC 1950). Piece boundaries depend only
// on the bytes, so the stream is the same for any number of threads.
#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <span>
#include <string_view>

#include "engine/deflate_pool.h"

namespace hdi::engine {

class CompressedStream {
 public:
  // `pool` must outlive the stream.
  explicit CompressedStream(DeflatePool& pool) : pool_(pool) {}
  CompressedStream(const CompressedStream&) = delete;
  CompressedStream& operator=(const CompressedStream&) = delete;
  // Withdraws the pieces not yet compressed.
  ~CompressedStream();

  // The size of the piece that starts at `position`, in bytes.
  [[nodiscard]] static size_t PieceSizeAt(size_t position);
  // The number of bytes appended.
  [[nodiscard]] size_t PlainSize() const { return plainSize_; }

  // `owner` keeps the bytes alive while they are needed; null if they outlive the stream. Throws
  // std::bad_alloc, with nothing appended.
  void Append(const std::shared_ptr<const char[]>& owner, std::string_view bytes, PiecePlace place);

  // Drops all after the first `size` bytes, which must be a piece boundary.
  void KeepFirst(size_t size) noexcept;

  // Whether Finish would return without waiting.
  [[nodiscard]] bool IsDone();
  // Waits for all pieces and returns the size of the stream. Throws std::bad_alloc if a piece could not be
  // compressed.
  [[nodiscard]] size_t Finish();
  // Copies the finished stream to `out`, which has the size that Finish returned.
  void CopyTo(std::span<uint8_t> out) const;

 private:
  DeflatePool& pool_;
  std::list<DeflateTask> pieces_;
  size_t plainSize_ = 0;
};

}  // namespace hdi::engine
