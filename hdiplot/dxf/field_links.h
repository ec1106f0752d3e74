// The links of fields, the parts of a text that a CAD program fills in. A text's extension dictionary leads
// through its entries ACAD_FIELD and TEXT to FIELD objects, and these to the fields nested in them. A field's
// code is like %<\AcVar Author \href "target#place#flag">%.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "hdiplot/dxf/dxf_object.h"
#include "hdiplot/dxf/text_decoder.h"

namespace hdiplot {

// The target of the field with that code, its place after a number sign. Empty: no link.
[[nodiscard]] std::string LinkOfField(std::string_view code);

// Replaces the codes of fields in a text by their links, or by dashes; most texts hold the fields' values
// instead. Returns the first link. Empty: there is none.
[[nodiscard]] std::string ReplaceFieldCodes(std::string& utf8, Backslash backslash);

class FieldLinks {
 public:
  // `decoder` has to outlive it.
  explicit FieldLinks(const TextDecoder& decoder) : decoder_(decoder) {}

  // Takes an object of the section OBJECTS. Types other than DICTIONARY and FIELD are ignored.
  void Add(const DxfObject& object);

  // The link of the first field that has one, below the dictionary with that handle. Empty: there is none.
  // Objects that are missing or refer to each other in a circle are passed over.
  [[nodiscard]] std::string Find(std::string_view dictionary) const;

 private:
  struct Node {
    std::string link;
    std::vector<std::string> children;  // HandleKeys, as the next
  };

  const TextDecoder& decoder_;
  std::map<std::string, Node> nodes_;
};

}  // namespace hdiplot
