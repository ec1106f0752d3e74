// Access to objects that may be of another type than expected, which qpdf warns of.
#pragma once

#include <map>
#include <qpdf/QPDFObjectHandle.hh>
#include <string>
#include <string_view>
#include <vector>

namespace hdiplot {

// Empty for what is no dictionary, or no array.
[[nodiscard]] inline std::map<std::string, QPDFObjectHandle> EntriesOf(QPDFObjectHandle object) {
  return object.isDictionary() ? object.getDictAsMap() : std::map<std::string, QPDFObjectHandle>();
}
[[nodiscard]] inline std::vector<QPDFObjectHandle> ItemsOf(QPDFObjectHandle object) {
  return object.isArray() ? object.getArrayAsVector() : std::vector<QPDFObjectHandle>();
}

// The items of an array, or the object itself, which may stand for an array of one.
[[nodiscard]] inline std::vector<QPDFObjectHandle> ItemsOrOne(QPDFObjectHandle object) {
  return object.isArray() ? object.getArrayAsVector() : std::vector<QPDFObjectHandle>{object};
}

// Gives a stream new data. qpdf would compress it anew in each of its passes over the document.
void SetCompressedData(QPDFObjectHandle stream, std::string_view data);

// With the slash.
[[nodiscard]] inline std::string NameOrEmpty(QPDFObjectHandle object) {
  return object.isName() ? object.getName() : "";
}

}  // namespace hdiplot
