// The engine's document, in our own terms: what the driver needs of PDFium beyond and behind its public
// functions.
//
// Headers of this folder name nothing of the engine, so that no other folder depends on its internals. Object
// numbers are those of indirect objects (ISO 32000-1:2008, 7.3.10). Lengths are in points.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "engine/compression.h"

namespace hdi::engine {

class Font;
class Page;

// The engine's library, which must be alive around every document. One at a time.
class Library {
 public:
  Library();
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;
  ~Library();
};

// Takes the saved file block by block. A block that it refuses (false) or throws on ends the saving.
class BlockSink {
 public:
  virtual bool WriteBlock(const void* data, size_t size) = 0;

 protected:
  ~BlockSink() = default;
};

// A new document with a catalog, an empty page tree and an empty information dictionary (ISO 32000-1:2008,
// 14.3.3).
class Document {
 public:
  struct Implementation;

  // Its streams are compressed by up to `workers` threads beside the caller's, which end with it.
  explicit Document(Compression compression = Compression::kNormal, unsigned workers = DefaultWorkers());
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;
  ~Document();

  // Sets an entry of the information dictionary to the bytes as they stand.
  void SetInformationBytes(const char* key, std::string_view bytes);
  // The same with a text string (7.9.2.2).
  void SetInformationText(const char* key, std::u16string_view text);

  // Adds a page of this size before the page that stands at `index`, which is clamped to what exists. Null
  // when the engine refuses. The page must be destroyed before the document. Throws std::bad_alloc, having
  // added nothing.
  [[nodiscard]] std::unique_ptr<Page> NewPage(int index, double width, double height);

  // Writes the whole file into `sink`. Rethrows what the sink threw.
  void Save(BlockSink& sink);

  // For the rest of this folder.
  [[nodiscard]] Implementation& Internals() { return *implementation_; }

 private:
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace hdi::engine
