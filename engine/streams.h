// Streams of the engine's document, made of our own bytes; seen by this folder only.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "core/fpdfapi/parser/cpdf_dictionary.h"
#include "core/fpdfapi/parser/cpdf_document.h"
#include "core/fxcrt/data_vector.h"
#include "core/fxcrt/retain_ptr.h"
#include "engine/document_implementation.h"

namespace hdi::engine {

inline std::span<const uint8_t> AsBytes(std::string_view text) {
  return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}

// Each makes an indirect object and returns its number. `dictionary` becomes the stream's own. They throw
// std::bad_alloc where the engine, left to itself, would end the process.

// A stream as it stands. The engine compresses it when it saves, unless it has a filter.
uint32_t AddStream(CPDF_Document& document, std::span<const uint8_t> bytes,
                   RetainPtr<CPDF_Dictionary> dictionary);

// A stream that is compressed at once, which the engine then saves as it is. The document's workers help.
uint32_t AddCompressedStream(Document::Implementation& document, std::span<const uint8_t> bytes,
                             RetainPtr<CPDF_Dictionary> dictionary);

// The stream's bytes, for which it waits.
DataVector<uint8_t> ToEngine(CompressedStream& stream);

}  // namespace hdi::engine
