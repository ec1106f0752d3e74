// The engine's objects behind Document and Page. Private to this folder.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "core/fpdfapi/page/cpdf_page.h"
#include "core/fpdfapi/parser/cpdf_document.h"
#include "core/fpdfapi/parser/cpdf_stream.h"
#include "engine/compressed_stream.h"
#include "engine/deflate_pool.h"
#include "engine/document.h"
#include "engine/page.h"
#include "public/cpp/fpdf_scopers.h"

namespace hdi::engine {

// A stream of the document whose bytes are still being compressed.
struct PendingStream {
  RetainPtr<CPDF_Stream> stream;
  std::unique_ptr<CompressedStream> bytes;
};

struct Document::Implementation {
  Implementation(Compression compression, unsigned workers) : pool(compression, workers) {}

  ScopedFPDFDocument handle;
  CPDF_Document* document = nullptr;  // the object behind the handle
  DeflatePool pool;
  std::vector<PendingStream> pending;

  // Sets the bytes of all pending streams whose compression is done. One without memory for them stays
  // pending.
  void PlaceDone();
  // Sets the bytes of all pending streams, waiting for them. One without memory for them stays empty.
  void PlaceAll();
};

// Key of the page dictionary.
inline constexpr const char* kViewports = "VP";

struct Page::Implementation {
  ScopedFPDFPage handle;
  CPDF_Page* page = nullptr;  // the object behind the handle
  Document::Implementation* document = nullptr;
  std::unique_ptr<CompressedStream> contents;  // null until something is appended

  // Resources named so far, by category. SetContents adds them to the page and makes those with a dictionary
  // indirect objects.
  struct Resource {
    size_t index;  // in the order of naming, over all categories
    std::string name;
    uint32_t objectNumber;
    RetainPtr<CPDF_Dictionary> dictionary;
  };
  std::map<ResourceCategory, std::vector<Resource>> resources;
  size_t resourceCount = 0;
  std::map<ResourceCategory, std::map<uint32_t, std::string>> namesByObject;
  std::map<std::string, std::string> standardFonts;  // name by base font

  void Append(const std::shared_ptr<const char[]>& owner, std::string_view bytes, PiecePlace place);
  // Adds a resource and returns its name.
  std::string Add(ResourceCategory category, uint32_t objectNumber, RetainPtr<CPDF_Dictionary> dictionary);
  void KeepFirstResources(size_t count) noexcept;
  void PutResources();
  [[nodiscard]] size_t AnnotationCount() const;
  void KeepFirstAnnotations(size_t count) noexcept;

  [[nodiscard]] CPDF_Document& Pdf() const { return *document->document; }
};

}  // namespace hdi::engine
