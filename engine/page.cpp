// The page's contents and resources.
#include "engine/page.h"

#include <algorithm>
#include <sstream>
#include <utility>

#include "constants/page_object.h"
#include "core/fpdfapi/edit/cpdf_contentstream_write_utils.h"
#include "core/fpdfapi/parser/cpdf_array.h"
#include "core/fpdfapi/parser/cpdf_dictionary.h"
#include "core/fpdfapi/parser/cpdf_name.h"
#include "core/fpdfapi/parser/cpdf_number.h"
#include "core/fpdfapi/parser/cpdf_reference.h"
#include "core/fxcrt/bytestring.h"
#include "engine/document_implementation.h"
#include "engine/new_objects.h"
#include "engine/streams.h"

namespace hdi::engine {
namespace {

namespace page_object = pdfium::page_object;

ByteStringView ToView(std::string_view text) { return {text.data(), text.size()}; }

const char* CategoryKey(ResourceCategory category) {
  switch (category) {
    case ResourceCategory::kExtGState:
      return "ExtGState";
    case ResourceCategory::kFont:
      return "Font";
    case ResourceCategory::kProperties:
      return "Properties";
    case ResourceCategory::kXObject:
      return "XObject";
  }
  return "";
}

uint32_t AddPlainStream(CPDF_Document& document, std::string_view bytes) {
  return AddStream(document, AsBytes(bytes), document.New<CPDF_Dictionary>());
}

// Returns the page's contents as an array, converting a single stream; null for a page without contents.
RetainPtr<CPDF_Array> ContentsArray(CPDF_Dictionary& page, CPDF_Document& document) {
  const RetainPtr<CPDF_Object> contents = page.GetMutableDirectObjectFor(page_object::kContents);
  if (contents == nullptr) return nullptr;
  if (contents->IsArray()) return RetainPtr<CPDF_Array>(contents->AsMutableArray());
  if (!contents->IsStream() || contents->IsInline()) return nullptr;
  auto array = document.NewIndirect<CPDF_Array>();
  array->AppendNew<CPDF_Reference>(&document, contents->GetObjNum());
  page.SetNewFor<CPDF_Reference>(page_object::kContents, &document, array->GetObjNum());
  return array;
}

}  // namespace

Page::Page(std::unique_ptr<Implementation> implementation) : implementation_(std::move(implementation)) {}

Page::~Page() = default;

uint32_t Page::ObjectNumber() const { return implementation_->page->GetDict()->GetObjNum(); }

float Page::Width() const { return implementation_->page->GetPageWidth(); }

float Page::Height() const { return implementation_->page->GetPageHeight(); }

bool Page::HasContents() const {
  return implementation_->page->GetDict()->GetDirectObjectFor(page_object::kContents) != nullptr;
}

size_t Page::ContentsPieceSize() const { return CompressedStream::PieceSizeAt(ContentsSize()); }

size_t Page::ContentsSize() const {
  return implementation_->contents == nullptr ? 0 : implementation_->contents->PlainSize();
}

void Page::KeepFirstContents(size_t size) noexcept {
  if (implementation_->contents != nullptr) implementation_->contents->KeepFirst(size);
}

void Page::AppendContents(const std::shared_ptr<const char[]>& owner, std::string_view bytes) {
  implementation_->Append(owner, bytes, PiecePlace::kInner);
}

void Page::SetContents(const std::shared_ptr<const char[]>& owner, std::string_view bytes) {
  Document::Implementation& document = *implementation_->document;
  document.pending.reserve(document.pending.size() + 1);
  implementation_->Append(owner, bytes, PiecePlace::kLast);
  implementation_->PutResources();
  const auto stream = document.document->NewIndirect<CPDF_Stream>(document.document->New<CPDF_Dictionary>());
  implementation_->page->GetMutableDict()->SetNewFor<CPDF_Reference>(page_object::kContents,
                                                                     document.document, stream->GetObjNum());
  document.pending.push_back({stream, std::move(implementation_->contents)});
}

void Page::WrapContents(std::string_view before, std::string_view after) {
  CPDF_Document& document = implementation_->Pdf();
  const auto array = ContentsArray(*implementation_->page->GetMutableDict(), document);
  if (array == nullptr) return;
  array->InsertNewAt<CPDF_Reference>(0, &document, AddPlainStream(document, before));
  array->AppendNew<CPDF_Reference>(&document, AddPlainStream(document, after));
}

void Page::PrependContents(std::string_view bytes) {
  CPDF_Document& document = implementation_->Pdf();
  const auto array = ContentsArray(*implementation_->page->GetMutableDict(), document);
  if (array == nullptr) return;
  array->InsertNewAt<CPDF_Reference>(0, &document, AddPlainStream(document, bytes));
}

void Page::Implementation::Append(const std::shared_ptr<const char[]>& owner, std::string_view bytes,
                                  PiecePlace place) {
  if (contents == nullptr) contents = std::make_unique<CompressedStream>(document->pool);
  contents->Append(owner, bytes, place);
}

// Names are "FX", the category's initial and a number within the category.
std::string Page::Implementation::Add(ResourceCategory category, uint32_t objectNumber,
                                      RetainPtr<CPDF_Dictionary> dictionary) {
  std::vector<Resource>& all = resources[category];
  std::string name = std::string("FX") + CategoryKey(category)[0] + std::to_string(all.size() + 1);
  all.push_back({resourceCount, name, objectNumber, std::move(dictionary)});
  ++resourceCount;
  return name;
}

void Page::Implementation::KeepFirstResources(size_t count) noexcept {
  for (auto& [category, all] : resources) {
    for (; !all.empty() && all.back().index >= count; all.pop_back()) {
      const auto isIt = [&name = all.back().name](const auto& entry) { return entry.second == name; };
      const auto named = namesByObject.find(category);
      if (named != namesByObject.end()) std::erase_if(named->second, isIt);
      std::erase_if(standardFonts, isIt);
    }
  }
  resourceCount = std::min(resourceCount, count);
}

void Page::Implementation::PutResources() {
  const auto dictionary = page->GetMutableDict()->GetOrCreateDictFor(page_object::kResources);
  for (const auto& [category, all] : resources) {
    if (all.empty()) continue;
    const auto named = dictionary->GetOrCreateDictFor(CategoryKey(category));
    for (const Resource& resource : all) {
      // A clone: an object removed from the document by a rollback cannot be added again.
      const uint32_t objectNumber = resource.dictionary == nullptr
                                        ? resource.objectNumber
                                        : Pdf().AddIndirectObject(resource.dictionary->Clone());
      named->SetNewFor<CPDF_Reference>(ByteString(ToView(resource.name)), &Pdf(), objectNumber);
    }
  }
}

size_t Page::ResourceCount() const { return implementation_->resourceCount; }

void Page::KeepFirstResources(size_t count) noexcept { implementation_->KeepFirstResources(count); }

std::string Page::AddGraphicsState(const GraphicsState& state) {
  auto dictionary = implementation_->Pdf().New<CPDF_Dictionary>();
  if (state.fillAlpha) dictionary->SetNewFor<CPDF_Number>("ca", *state.fillAlpha);
  if (state.strokeAlpha) dictionary->SetNewFor<CPDF_Number>("CA", *state.strokeAlpha);
  if (state.blendMode) dictionary->SetNewFor<CPDF_Name>("BM", ByteString(ToView(*state.blendMode)));
  return implementation_->Add(ResourceCategory::kExtGState, 0, std::move(dictionary));
}

std::string Page::ResourceName(ResourceCategory category, uint32_t objectNumber) {
  std::string& name = implementation_->namesByObject[category][objectNumber];
  if (name.empty()) name = implementation_->Add(category, objectNumber, nullptr);
  return name;
}

std::string Page::StandardFontName(const std::string& baseFont) {
  std::string& name = implementation_->standardFonts[baseFont];
  if (!name.empty()) return name;
  auto font = implementation_->Pdf().New<CPDF_Dictionary>();
  font->SetNewFor<CPDF_Name>("Type", "Font");
  font->SetNewFor<CPDF_Name>("Subtype", "Type1");
  font->SetNewFor<CPDF_Name>("BaseFont", ByteString(ToView(baseFont)));
  font->SetNewFor<CPDF_Name>("Encoding", "WinAnsiEncoding");
  name = implementation_->Add(ResourceCategory::kFont, 0, std::move(font));
  return name;
}

Page::Attempt::Attempt(Page& page)
    : page_(*page.implementation_),
      lastObject_(page_.Pdf().GetLastObjNum()),
      contentsSize_(page.ContentsSize()),
      pendingStreams_(page_.document->pending.size()),
      annotations_(page_.AnnotationCount()) {}

void Page::Attempt::Undo() noexcept {
  std::vector<PendingStream>& pending = page_.document->pending;
  if (pending.size() > pendingStreams_) {
    page_.contents = std::move(pending.back().bytes);
    pending.pop_back();
  }
  if (page_.contents != nullptr) page_.contents->KeepFirst(contentsSize_);

  const auto dictionary = page_.page->GetMutableDict();
  dictionary->RemoveFor(page_object::kContents);
  dictionary->RemoveFor(kViewports);
  if (const auto resources = dictionary->GetMutableDictFor(page_object::kResources)) {
    for (const auto& [category, all] : page_.resources) resources->RemoveFor(CategoryKey(category));
  }
  page_.KeepFirstAnnotations(annotations_);
  RemoveObjectsAfter(page_.Pdf(), lastObject_);
}

std::string NumberText(float value) {
  std::ostringstream text;
  WriteFloat(text, value);
  return std::move(text).str();
}

}  // namespace hdi::engine
