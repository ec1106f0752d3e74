// Group dictionaries and the catalog's "OCProperties".
#include "engine/optional_content.h"

#include "core/fpdfapi/parser/cpdf_array.h"
#include "core/fpdfapi/parser/cpdf_dictionary.h"
#include "core/fpdfapi/parser/cpdf_name.h"
#include "core/fpdfapi/parser/cpdf_reference.h"
#include "core/fpdfapi/parser/cpdf_string.h"
#include "engine/document_implementation.h"
#include "engine/wide_string.h"

namespace hdi::engine {
namespace {

// The properties, made with the first group. The page mode stands among them; the catalog has none.
RetainPtr<CPDF_Dictionary> Properties(CPDF_Document& document) {
  const auto catalog = document.GetMutableRoot();
  RetainPtr<CPDF_Dictionary> properties = catalog->GetMutableDictFor("OCProperties");
  if (properties != nullptr) return properties;
  properties = catalog->SetNewFor<CPDF_Dictionary>("OCProperties");
  properties->SetNewFor<CPDF_Name>("PageMode", "UseOC");
  properties->SetNewFor<CPDF_Array>("OCGs");
  const auto configuration = properties->SetNewFor<CPDF_Dictionary>("D");
  configuration->SetNewFor<CPDF_Array>("OFF");
  configuration->SetNewFor<CPDF_Array>("Order");
  return properties;
}

}  // namespace

uint32_t AddOptionalContentGroup(Document& document, std::u16string_view name, size_t orderIndex) {
  CPDF_Document& pdf = *document.Internals().document;
  const auto group = pdf.NewIndirect<CPDF_Dictionary>();
  group->SetNewFor<CPDF_Name>("Type", "OCG");
  group->SetNewFor<CPDF_String>("Name", ToWideString(name).AsStringView());
  const uint32_t objectNumber = group->GetObjNum();

  const auto properties = Properties(pdf);
  properties->GetMutableArrayFor("OCGs")->AppendNew<CPDF_Reference>(&pdf, objectNumber);
  const auto order = properties->GetMutableDictFor("D")->GetMutableArrayFor("Order");
  order->InsertNewAt<CPDF_Reference>(orderIndex, &pdf, objectNumber);
  return objectNumber;
}

}  // namespace hdi::engine
