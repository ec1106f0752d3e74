// Streams of our own bytes, in memory of the engine's.
#include "engine/streams.h"

#include <memory>
#include <new>
#include <utility>

#include "core/fpdfapi/parser/cpdf_name.h"
#include "core/fpdfapi/parser/cpdf_stream.h"
#include "core/fxcrt/data_vector.h"
#include "core/fxcrt/fx_memory.h"
#include "engine/deflate.h"

namespace hdi::engine {
namespace {

// The engine's own vectors end the process when there is no memory for them, so it is tried beforehand.
DataVector<uint8_t> Copy(std::span<const uint8_t> bytes) {
  if (bytes.empty()) return {};
  std::unique_ptr<uint8_t, FxFreeDeleter> trial(FX_TryAllocUninit(uint8_t, bytes.size()));
  if (trial == nullptr) throw std::bad_alloc();
  trial.reset();
  return {bytes.begin(), bytes.end()};
}

}  // namespace

uint32_t AddStream(CPDF_Document& document, std::span<const uint8_t> bytes,
                   RetainPtr<CPDF_Dictionary> dictionary) {
  return document.NewIndirect<CPDF_Stream>(Copy(bytes), std::move(dictionary))->GetObjNum();
}

uint32_t AddCompressedStream(CPDF_Document& document, std::span<const uint8_t> bytes,
                             RetainPtr<CPDF_Dictionary> dictionary) {
  const Deflated deflated({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
  if (deflated.Bytes().empty()) return AddStream(document, bytes, std::move(dictionary));
  dictionary->SetNewFor<CPDF_Name>("Filter", "FlateDecode");
  return AddStream(document, deflated.Bytes(), std::move(dictionary));
}

}  // namespace hdi::engine
