#include "engine/deflate.h"

#include <libdeflate.h>

#include <memory>

namespace hdi::engine {
namespace {

// The quickest level whose files are no larger than those of zlib's default: see bench/.
constexpr int kLevel = 6;

struct FreeCompressor {
  void operator()(libdeflate_compressor* compressor) const { libdeflate_free_compressor(compressor); }
};
using Compressor = std::unique_ptr<libdeflate_compressor, FreeCompressor>;

Compressor NewCompressor() { return Compressor(libdeflate_alloc_compressor(kLevel)); }

}  // namespace

size_t DeflateBound(size_t size) { return libdeflate_zlib_compress_bound(nullptr, size); }

size_t Deflate(std::string_view bytes, std::span<uint8_t> out) {
  const Compressor compressor = NewCompressor();
  if (compressor == nullptr) return 0;
  return libdeflate_zlib_compress(compressor.get(), bytes.data(), bytes.size(), out.data(), out.size());
}

}  // namespace hdi::engine
