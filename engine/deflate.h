// Compression of content streams in the zlib form that FlateDecode takes (ISO 32000-1:2008, 7.4.4).
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

namespace hdi::engine {

// Compressed bytes in memory of their own, which was never cleared: a page's stream can be large.
class Deflated {
 public:
  explicit Deflated(std::string_view bytes);

  // Empty when there was no memory for it.
  [[nodiscard]] std::span<const uint8_t> Bytes() const { return {data_.get(), size_}; }

 private:
  std::unique_ptr<uint8_t[]> data_;
  size_t size_ = 0;
};

}  // namespace hdi::engine
