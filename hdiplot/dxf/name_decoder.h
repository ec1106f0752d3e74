// Names and texts as UTF-8, whatever a DXF's version, code page and escapes make of them.
#pragma once

#include <string>
#include <string_view>

#include "hdiplot/dxf/group.h"
#include "hdiplot/system/ascii_case.h"

namespace hdiplot {

// Names are shorter than 256 characters in earnest, and layer names of 1024 are more than a driver takes.
inline constexpr size_t kLongestName = 1000;

// What a backslash in a text is.
enum class Backslash { kItself, kStartsCode };

class NameDecoder {
 public:
  // The value of $ACADVER: from AC1021 on files are UTF-8.
  void SetVersion(std::string_view version) { utf8_ = version >= "AC1021"; }
  // The value of $DWGCODEPAGE, such as ANSI_1252. One that is not known counts as none.
  void SetCodePage(std::string_view codePage);

  std::string Decode(std::string_view raw) const;
  // Throws DxfFault for a name of more than kLongestName bytes.
  std::string Decode(const Group& group) const;

  // A text of any length, without control characters; a tab becomes "^I". Where backslashes start codes, a
  // character that was escaped and would be read as one is put down as the code for itself.
  std::string DecodeText(std::string_view raw, Backslash backslash) const;

 private:
  std::string ToUtf8(std::string_view raw) const;

  static constexpr const char* kUsualCodePage = "CP1252";

  std::string codePage_ = kUsualCodePage;  // as iconv calls it
  bool utf8_ = false;
  bool mayBeUtf8_ = true;  // whatever the version says
};

}  // namespace hdiplot
