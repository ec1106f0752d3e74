// The document: wraps what the driver uses of PDFium beyond its public functions.
//
// Headers of this folder do not mention the engine, so that no other folder depends on its internals. Object
// numbers are those of indirect objects (ISO 32000-1:2008, 7.3.10). Lengths are in points.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "engine/compression.h"

namespace hdi::engine {

class Font;
class Page;

// Receives the saved file in blocks. Returning false or throwing ends the saving.
class BlockSink {
 public:
  virtual bool WriteBlock(const void* data, size_t size) = 0;

 protected:
  ~BlockSink() = default;
};

// A new document has a catalog, an empty page tree and an empty information dictionary (ISO 32000-1:2008,
// 14.3.3).
class Document {
 public:
  struct Implementation;

  // Up to `workers` threads beside the caller's compress its streams; they end with the document.
  explicit Document(Compression compression = Compression::kNormal, unsigned workers = DefaultWorkers());
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;
  ~Document();

  // Sets an entry of the information dictionary to these bytes.
  void SetInformationBytes(const char* key, std::string_view bytes);
  // Sets an entry of the information dictionary to a text string (7.9.2.2).
  void SetInformationText(const char* key, std::u16string_view text);

  // Inserts a page of this size before the page at `index`, which is clamped. Returns null if the engine
  // refuses. The page must be destroyed before the document. Throws std::bad_alloc, with nothing added.
  [[nodiscard]] std::unique_ptr<Page> NewPage(int index, double width, double height);

  // Writes the whole file to `sink`. Rethrows what the sink threw.
  void Save(BlockSink& sink);

  // For this folder only.
  [[nodiscard]] Implementation& Internals() { return *implementation_; }

 private:
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace hdi::engine
