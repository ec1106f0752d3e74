// Adds streams with bytes in the engine's memory.
#include "engine/streams.h"

#include <algorithm>
#include <memory>
#include <new>
#include <utility>

#include "core/fpdfapi/parser/cpdf_name.h"
#include "core/fpdfapi/parser/cpdf_stream.h"
#include "core/fxcrt/fx_memory.h"

namespace hdi::engine {
namespace {

// The engine's vectors end the process if allocation fails, so the allocation is tried first.
DataVector<uint8_t> NewVector(size_t size) {
  if (size == 0) return {};
  std::unique_ptr<uint8_t, FxFreeDeleter> trial(FX_TryAllocUninit(uint8_t, size));
  if (trial == nullptr) throw std::bad_alloc();
  trial.reset();
  return DataVector<uint8_t>(size);
}

}  // namespace

uint32_t AddStream(CPDF_Document& document, std::span<const uint8_t> bytes,
                   RetainPtr<CPDF_Dictionary> dictionary) {
  DataVector<uint8_t> copy = NewVector(bytes.size());
  std::ranges::copy(bytes, copy.begin());
  return document.NewIndirect<CPDF_Stream>(std::move(copy), std::move(dictionary))->GetObjNum();
}

uint32_t AddCompressedStream(Document::Implementation& document, std::span<const uint8_t> bytes,
                             RetainPtr<CPDF_Dictionary> dictionary) {
  CompressedStream stream(document.pool);
  stream.Append(nullptr, {reinterpret_cast<const char*>(bytes.data()), bytes.size()}, PiecePlace::kLast);
  dictionary->SetNewFor<CPDF_Name>("Filter", "FlateDecode");
  return document.document->NewIndirect<CPDF_Stream>(ToEngine(stream), std::move(dictionary))->GetObjNum();
}

DataVector<uint8_t> ToEngine(CompressedStream& stream) {
  DataVector<uint8_t> bytes = NewVector(stream.Finish());
  stream.CopyTo(bytes);
  return bytes;
}

}  // namespace hdi::engine
