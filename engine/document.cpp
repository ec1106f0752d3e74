// The document: creation, information, pages and saving.
#include "engine/document.h"

#include <algorithm>
#include <exception>
#include <new>
#include <utility>

#include "core/fpdfapi/parser/cpdf_array.h"
#include "core/fpdfapi/parser/cpdf_dictionary.h"
#include "core/fpdfapi/parser/cpdf_name.h"
#include "core/fpdfapi/parser/cpdf_number.h"
#include "core/fpdfapi/parser/cpdf_string.h"
#include "core/fxcrt/bytestring.h"
#include "engine/document_implementation.h"
#include "engine/new_objects.h"
#include "engine/streams.h"
#include "engine/wide_string.h"
#include "fpdfsdk/cpdfsdk_helpers.h"
#include "public/fpdf_edit.h"
#include "public/fpdf_save.h"

namespace hdi::engine {
namespace {

// The engine's sink and the exception that ended the saving. The engine writes its last block from a
// destructor, so exceptions must not pass through it.
struct FileWrite : FPDF_FILEWRITE {
  BlockSink* sink;
  std::exception_ptr failure;
};

int WriteBlock(FPDF_FILEWRITE* self, const void* data, unsigned long size) {
  auto* fileWrite = static_cast<FileWrite*>(self);
  if (fileWrite->failure != nullptr) return 0;
  try {
    return fileWrite->sink->WriteBlock(data, size) ? 1 : 0;
  } catch (...) {
    fileWrite->failure = std::current_exception();
    return 0;
  }
}

// Waits for the stream's compressed bytes and sets them; false if out of memory.
bool Place(PendingStream& stream) {
  try {
    DataVector<uint8_t> bytes = ToEngine(*stream.bytes);
    stream.stream->GetMutableDict()->SetNewFor<CPDF_Name>("Filter", "FlateDecode");
    stream.stream->TakeData(std::move(bytes));
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

// Removes a page that was added, perhaps incompletely, at `index` of a document with `pages` pages.
void RemoveNewPage(CPDF_Document& document, int index, int pages) {
  if (document.GetPageCount() > pages) {
    document.DeletePage(index);
    return;
  }
  // The engine updates its own page list after the page tree, which has a single node.
  const auto tree = document.GetMutableRoot()->GetMutableDictFor("Pages");
  const auto kids = tree->GetMutableArrayFor("Kids");
  if (kids == nullptr || kids->size() <= static_cast<size_t>(pages)) return;
  kids->RemoveAt(static_cast<size_t>(index));
  tree->SetNewFor<CPDF_Number>("Count", pages);
}

}  // namespace

void Document::Implementation::PlaceDone() {
  std::erase_if(pending, [](PendingStream& stream) { return stream.bytes->IsDone() && Place(stream); });
}

void Document::Implementation::PlaceAll() {
  for (PendingStream& stream : pending) Place(stream);
  pending.clear();
}

Document::Document(Compression compression, unsigned workers)
    : implementation_(std::make_unique<Implementation>(compression, workers)) {
  implementation_->handle.reset(FPDF_CreateNewDocument());
  implementation_->document = CPDFDocumentFromFPDFDocument(implementation_->handle.get());
  // Remove the engine's own entries.
  const RetainPtr<CPDF_Dictionary> information = implementation_->document->GetInfo();
  if (information == nullptr) return;
  for (const ByteString& key : information->GetKeys()) information->RemoveFor(key.AsStringView());
}

Document::~Document() = default;

void Document::SetInformationBytes(const char* key, std::string_view bytes) {
  const RetainPtr<CPDF_Dictionary> information = implementation_->document->GetInfo();
  if (information == nullptr) return;
  information->SetNewFor<CPDF_String>(key, ByteString(bytes.data(), bytes.size()));
}

void Document::SetInformationText(const char* key, std::u16string_view text) {
  const RetainPtr<CPDF_Dictionary> information = implementation_->document->GetInfo();
  if (information == nullptr) return;
  information->SetNewFor<CPDF_String>(key, ToWideString(text).AsStringView());
}

std::unique_ptr<Page> Document::NewPage(int index, double width, double height) {
  implementation_->PlaceDone();
  CPDF_Document& pdf = *implementation_->document;
  const uint32_t lastObject = pdf.GetLastObjNum();
  const int pages = pdf.GetPageCount();
  index = std::clamp(index, 0, pages);
  try {
    ScopedFPDFPage handle(FPDFPage_New(implementation_->handle.get(), index, width, height));
    if (handle == nullptr) return nullptr;
    auto page = std::make_unique<Page::Implementation>();
    page->page = CPDFPageFromFPDFPage(handle.get());
    page->document = implementation_.get();
    page->handle = std::move(handle);
    return std::make_unique<Page>(std::move(page));
  } catch (const std::bad_alloc&) {
    RemoveNewPage(pdf, index, pages);
    RemoveObjectsAfter(pdf, lastObject);
    throw;
  }
}

void Document::Save(BlockSink& sink) {
  implementation_->PlaceAll();
  FileWrite fileWrite{};
  fileWrite.version = 1;
  fileWrite.WriteBlock = &WriteBlock;
  fileWrite.sink = &sink;
  FPDF_SaveAsCopy(implementation_->handle.get(), &fileWrite, 0);
  if (fileWrite.failure != nullptr) std::rethrow_exception(fileWrite.failure);
}

}  // namespace hdi::engine
