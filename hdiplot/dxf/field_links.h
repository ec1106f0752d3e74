// The links of fields: from a text's extension dictionary through its entries ACAD_FIELD and TEXT to FIELD
// objects, and through these to the fields within them.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "hdiplot/dxf/dxf_object.h"
#include "hdiplot/dxf/name_decoder.h"

namespace hdiplot {

class FieldLinks {
 public:
  // `names` has to outlive it.
  explicit FieldLinks(const NameDecoder& names) : names_(names) {}

  // Takes an object of the section OBJECTS; other kinds than DICTIONARY and FIELD do not count.
  void Add(const DxfObject& object);

  // What the first field with a link leads to, of those below the dictionary with that handle; empty: there
  // is none. Objects that are missing or lead in circles are passed over.
  [[nodiscard]] std::string Find(std::string_view dictionary) const;

 private:
  struct Node {
    std::string link;
    std::vector<std::string> children;  // by handle, in upper case as the next
  };

  const NameDecoder& names_;
  std::map<std::string, Node> nodes_;
};

}  // namespace hdiplot
