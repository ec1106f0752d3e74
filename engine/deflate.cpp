// Compression through libdeflate.
#include "engine/deflate.h"

#include <libdeflate.h>

namespace hdi::engine {
namespace {

// The quickest levels whose files are no larger than those of other PDF writers (bench/ compares them). The
// gain of the higher one is worth its time on a stream of ordinary size; on a huge one the time would be most
// of the plot's.
constexpr size_t kOrdinarySize = size_t{2} << 20;
constexpr int kOrdinaryLevel = 5;
constexpr int kHugeLevel = 2;

int LevelFor(size_t size) { return size <= kOrdinarySize ? kOrdinaryLevel : kHugeLevel; }

struct FreeCompressor {
  void operator()(libdeflate_compressor* compressor) const { libdeflate_free_compressor(compressor); }
};

}  // namespace

Deflated::Deflated(std::string_view bytes) {
  const std::unique_ptr<libdeflate_compressor, FreeCompressor> compressor(
      libdeflate_alloc_compressor(LevelFor(bytes.size())));
  if (compressor == nullptr) return;
  const size_t room = libdeflate_zlib_compress_bound(compressor.get(), bytes.size());
  data_ = std::make_unique_for_overwrite<uint8_t[]>(room);
  size_ = libdeflate_zlib_compress(compressor.get(), bytes.data(), bytes.size(), data_.get(), room);
}

}  // namespace hdi::engine
