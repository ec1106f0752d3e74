// Annotations and the measure of a page.
#include <algorithm>

#include "core/fpdfapi/parser/cpdf_array.h"
#include "core/fpdfapi/parser/cpdf_dictionary.h"
#include "core/fpdfapi/parser/cpdf_name.h"
#include "core/fpdfapi/parser/cpdf_number.h"
#include "core/fpdfapi/parser/cpdf_string.h"
#include "core/fxcrt/bytestring.h"
#include "engine/document_implementation.h"
#include "engine/page.h"
#include "engine/wide_string.h"
#include "public/fpdf_annot.h"

namespace hdi::engine {
namespace {

// Clamps a number to what is safe in a file: large numbers are written as integers, and readers that keep
// integers in 64 bits fail to open a page with a larger one.
float Writable(float number) {
  constexpr float kLargest = 0x1.fffffep62F;
  return std::clamp(number, -kLargest, kLargest);
}

void SetRectangle(FPDF_ANNOTATION annotation, const Rectangle& rectangle) {
  const FS_RECTF rect{Writable(rectangle.left), Writable(rectangle.top), Writable(rectangle.right),
                      Writable(rectangle.bottom)};
  FPDFAnnot_SetRect(annotation, &rect);
  FPDFAnnot_SetBorder(annotation, 0, 0, 0);
}

void SetText(FPDF_ANNOTATION annotation, const char* key, std::u16string_view text) {
  std::vector<FPDF_WCHAR> units(text.begin(), text.end());
  units.push_back(0);
  FPDFAnnot_SetStringValue(annotation, key, units.data());
}

// Sets an array of one number format (ISO 32000-1:2008, 12.9.2) whose unit has no name.
template <typename Number>
void SetNumberFormat(CPDF_Dictionary& measure, const char* key, Number factor) {
  const auto format = measure.SetNewFor<CPDF_Array>(key)->AppendNew<CPDF_Dictionary>();
  format->SetNewFor<CPDF_Number>("C", factor);
  format->SetNewFor<CPDF_String>("U", ByteString(" "));
}

}  // namespace

size_t Page::Implementation::AnnotationCount() const {
  const auto annotations = page->GetAnnotsArray();
  return annotations == nullptr ? 0 : annotations->size();
}

void Page::Implementation::KeepFirstAnnotations(size_t count) noexcept {
  const auto annotations = page->GetMutableAnnotsArray();
  if (annotations == nullptr) return;
  while (annotations->size() > count) annotations->RemoveAt(annotations->size() - 1);
  if (count == 0) page->GetMutableDict()->RemoveFor("Annots");
}

void Page::AddLinkAnnotation(const Rectangle& rectangle, const std::string& uri) {
  Attempt attempt(*this);
  const ScopedFPDFAnnotation annotation(FPDFPage_CreateAnnot(implementation_->handle.get(), FPDF_ANNOT_LINK));
  FPDFAnnot_SetURI(annotation.get(), uri.c_str());
  SetRectangle(annotation.get(), rectangle);
  attempt.Keep();
}

void Page::AddSquareAnnotation(const Rectangle& rectangle, std::u16string_view contents,
                               std::u16string_view title, uint32_t flags) {
  Attempt attempt(*this);
  const ScopedFPDFAnnotation annotation(
      FPDFPage_CreateAnnot(implementation_->handle.get(), FPDF_ANNOT_SQUARE));
  SetText(annotation.get(), "Contents", contents);
  SetText(annotation.get(), "T", title);
  FPDFAnnot_SetFlags(annotation.get(), static_cast<int>(flags));
  SetRectangle(annotation.get(), rectangle);
  attempt.Keep();
}

void Page::SetMeasureViewport(float scale) {
  const auto viewports = implementation_->page->GetMutableDict()->SetNewFor<CPDF_Array>(kViewports);
  const auto viewport = viewports->AppendNew<CPDF_Dictionary>();
  viewport->SetNewFor<CPDF_Name>("Type", "Viewport");
  viewport->SetRectFor("BBox", {});
  const auto measure = viewport->SetNewFor<CPDF_Dictionary>("Measure");
  measure->SetNewFor<CPDF_Name>("Type", "Measure");
  measure->SetNewFor<CPDF_Name>("Subtype", "RL");
  measure->SetNewFor<CPDF_String>("R", ByteString(" "));
  SetNumberFormat(*measure, "X", Writable(scale));
  SetNumberFormat(*measure, "A", 1);
  SetNumberFormat(*measure, "D", 1);
}

}  // namespace hdi::engine
