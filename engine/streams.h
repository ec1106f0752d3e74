// Adds streams to the engine's document. Private to this folder.
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

// These add an indirect object and return its number. The stream takes over `dictionary`. They throw
// std::bad_alloc where the engine itself would end the process.

// Adds the bytes unchanged. The engine compresses them when it saves, unless the stream has a filter.
uint32_t AddStream(CPDF_Document& document, std::span<const uint8_t> bytes,
                   RetainPtr<CPDF_Dictionary> dictionary);

// Adds the bytes compressed, with the help of the document's workers. The engine saves them unchanged.
uint32_t AddCompressedStream(Document::Implementation& document, std::span<const uint8_t> bytes,
                             RetainPtr<CPDF_Dictionary> dictionary);

// Waits for the stream and returns its bytes.
DataVector<uint8_t> ToEngine(CompressedStream& stream);

}  // namespace hdi::engine
