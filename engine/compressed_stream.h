// A stream in the form that FlateDecode takes (ISO 32000-1:2008, 7.4.4), compressed while it is still being
// written.
//
// Its pieces are compressed apart and joined to one zlib stream (RFC 1950). Where they are cut depends on the
// bytes alone, so that a stream is the same with any number of threads.
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
  // Gives up what is not compressed yet.
  ~CompressedStream();

  // The size of a piece behind that many bytes.
  [[nodiscard]] static size_t PieceSizeAt(size_t position);
  // Of the bytes appended so far.
  [[nodiscard]] size_t PlainSize() const { return plainSize_; }

  // `owner` keeps the bytes as long as they are needed; null when they outlive the stream. When it throws
  // std::bad_alloc, it has taken nothing.
  void Append(const std::shared_ptr<const char[]>& owner, std::string_view bytes, PiecePlace place);

  // Goes back to the first `size` bytes, which end with a piece.
  void KeepFirst(size_t size) noexcept;

  // Whether Finish would not wait.
  [[nodiscard]] bool IsDone();
  // Waits for the pieces; the size of the whole. Throws std::bad_alloc when one could not be compressed.
  [[nodiscard]] size_t Finish();
  // The finished stream, as long as `out`.
  void CopyTo(std::span<uint8_t> out) const;

 private:
  DeflatePool& pool_;
  std::list<DeflateTask> pieces_;
  size_t plainSize_ = 0;
};

}  // namespace hdi::engine
