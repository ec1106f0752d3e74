// XMP packets: RDF/XML with the properties of a document (ISO 16684-1).
#pragma once

#include <string>

namespace hdiplot {

// Text is clean UTF-8. Empty fields are left out.
struct XmpPacket {
  std::string title;
  std::string author;
  std::string subject;
  std::string keywords;
  std::string creator;
  std::string producer;
  std::string created;  // XMP dates
  std::string modified;
  int pdfAPart = 0;  // of ISO 19005, at level B
};

// Without padding, as nothing is to change it in place, and without the attributes that PDF/A forbids in its
// header (ISO 19005-2:2011, 6.6.2.1).
[[nodiscard]] std::string WriteXmp(const XmpPacket& packet);

}  // namespace hdiplot
