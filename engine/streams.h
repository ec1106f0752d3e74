// Streams of the engine's document, made of our own bytes; seen by this folder only.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "core/fpdfapi/parser/cpdf_dictionary.h"
#include "core/fpdfapi/parser/cpdf_document.h"
#include "core/fxcrt/retain_ptr.h"

namespace hdi::engine {

inline std::span<const uint8_t> AsBytes(std::string_view text) {
  return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}

// Each makes an indirect object and returns its number. `dictionary` becomes the stream's own. They throw
// std::bad_alloc where the engine, left to itself, would end the process.

// A stream as it stands. The engine compresses it when it saves, unless it has a filter.
uint32_t AddStream(CPDF_Document& document, std::span<const uint8_t> bytes,
                   RetainPtr<CPDF_Dictionary> dictionary);

// A stream that is compressed at once, which the engine then saves as it is. Large streams spend most of a
// plot's time here, so they do not go through the engine's compressor, and take no more memory than they
// need.
uint32_t AddCompressedStream(CPDF_Document& document, std::span<const uint8_t> bytes,
                             RetainPtr<CPDF_Dictionary> dictionary);

}  // namespace hdi::engine
