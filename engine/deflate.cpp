#include "engine/deflate.h"

#include <libdeflate.h>

namespace hdi::engine {
namespace {

// The quickest level whose files are no larger than those of other PDF writers; bench/ compares them.
constexpr int kLevel = 2;

struct FreeCompressor {
  void operator()(libdeflate_compressor* compressor) const { libdeflate_free_compressor(compressor); }
};

}  // namespace

Deflated::Deflated(std::string_view bytes) {
  const std::unique_ptr<libdeflate_compressor, FreeCompressor> compressor(
      libdeflate_alloc_compressor(kLevel));
  if (compressor == nullptr) return;
  const size_t room = libdeflate_zlib_compress_bound(compressor.get(), bytes.size());
  data_ = std::make_unique_for_overwrite<uint8_t[]>(room);
  size_ = libdeflate_zlib_compress(compressor.get(), bytes.data(), bytes.size(), data_.get(), room);
}

}  // namespace hdi::engine
