// Group dictionaries and the catalog's "OCProperties".
#include "engine/optional_content.h"

#include <new>

#include "core/fpdfapi/parser/cpdf_array.h"
#include "core/fpdfapi/parser/cpdf_dictionary.h"
#include "core/fpdfapi/parser/cpdf_name.h"
#include "core/fpdfapi/parser/cpdf_reference.h"
#include "core/fpdfapi/parser/cpdf_string.h"
#include "engine/document_implementation.h"
#include "engine/new_objects.h"
#include "engine/wide_string.h"

namespace hdi::engine {
namespace {

constexpr const char* kPropertiesKey = "OCProperties";

// Returns the optional content properties, created with the first group. The page mode is an entry of these,
// not of the catalog.
RetainPtr<CPDF_Dictionary> Properties(CPDF_Document& document) {
  const auto catalog = document.GetMutableRoot();
  RetainPtr<CPDF_Dictionary> properties = catalog->GetMutableDictFor(kPropertiesKey);
  if (properties != nullptr) return properties;
  properties = document.New<CPDF_Dictionary>();
  properties->SetNewFor<CPDF_Name>("PageMode", "UseOC");
  properties->SetNewFor<CPDF_Array>("OCGs");
  const auto configuration = properties->SetNewFor<CPDF_Dictionary>("D");
  configuration->SetNewFor<CPDF_Array>("OFF");
  configuration->SetNewFor<CPDF_Array>("Order");
  catalog->SetFor(kPropertiesKey, properties);
  return properties;
}

RetainPtr<CPDF_Array> Groups(CPDF_Dictionary& properties) { return properties.GetMutableArrayFor("OCGs"); }

RetainPtr<CPDF_Array> Order(CPDF_Dictionary& properties) {
  return properties.GetMutableDictFor("D")->GetMutableArrayFor("Order");
}

void RemoveReference(CPDF_Array& array, uint32_t objectNumber) {
  for (size_t i = array.size(); i-- > 0;) {
    if (array.GetObjectAt(i)->AsReference()->GetRefObjNum() == objectNumber) array.RemoveAt(i);
  }
}

// Removes the group from all lists that hold it, and the properties with the last group.
void Unlist(CPDF_Document& document, uint32_t group) noexcept {
  const auto catalog = document.GetMutableRoot();
  const auto properties = catalog->GetMutableDictFor(kPropertiesKey);
  if (properties == nullptr) return;
  RemoveReference(*Groups(*properties), group);
  RemoveReference(*Order(*properties), group);
  if (Groups(*properties)->IsEmpty()) catalog->RemoveFor(kPropertiesKey);
}

}  // namespace

uint32_t AddOptionalContentGroup(Document& document, std::u16string_view name, size_t orderIndex) {
  CPDF_Document& pdf = *document.Internals().document;
  NewObjects objects(pdf);
  const auto group = pdf.NewIndirect<CPDF_Dictionary>();
  group->SetNewFor<CPDF_Name>("Type", "OCG");
  group->SetNewFor<CPDF_String>("Name", ToWideString(name).AsStringView());
  const uint32_t objectNumber = group->GetObjNum();
  try {
    const auto properties = Properties(pdf);
    Groups(*properties)->AppendNew<CPDF_Reference>(&pdf, objectNumber);
    Order(*properties)->InsertNewAt<CPDF_Reference>(orderIndex, &pdf, objectNumber);
  } catch (const std::bad_alloc&) {
    Unlist(pdf, objectNumber);
    throw;
  }
  objects.Keep();
  return objectNumber;
}

void RemoveOptionalContentGroup(Document& document, uint32_t group) noexcept {
  CPDF_Document& pdf = *document.Internals().document;
  Unlist(pdf, group);
  RemoveObject(pdf, group);
}

}  // namespace hdi::engine
