// Names as UTF-8, whatever a DXF's version, code page and escapes make of them.
#pragma once

#include <string>
#include <string_view>

#include "host/hdiplot/ascii_case.h"
#include "host/hdiplot/dxf/group_reader.h"

namespace hdiplot {

// Names are shorter than 256 characters in earnest. dxflib reads lines of up to 1023 and never ends over a
// longer one; and layer names of 1024 are more than a driver takes.
inline constexpr size_t kLongestName = 1000;

class NameDecoder {
 public:
  // The value of $ACADVER: from AC1021 on files are UTF-8.
  void SetVersion(std::string_view version) { utf8_ = version >= "AC1021"; }
  // The value of $DWGCODEPAGE, such as ANSI_1252.
  void SetCodePage(std::string_view codePage) { codePage_ = UpperCase(codePage); }

  std::string Decode(std::string_view raw) const;
  // Throws DxfFault for a name of more than kLongestName bytes.
  std::string Decode(const Group& group) const;

 private:
  std::string codePage_ = "ANSI_1252";
  bool utf8_ = false;
};

}  // namespace hdiplot
