// Decodes names and texts of a DXF to UTF-8, by its version, its code page and the escapes in them.
#pragma once

#include <string>
#include <string_view>

#include "hdiplot/dxf/group.h"

namespace hdiplot {

// In bytes. Real names have at most 255 characters.
inline constexpr size_t kLongestName = 1000;

// The meaning of a backslash in a text.
enum class Backslash { kItself, kStartsCode };

class TextDecoder {
 public:
  // The value of $ACADVER: files are in UTF-8 from AC1021 on.
  void SetVersion(std::string_view version) { isUtf8_ = version >= "AC1021"; }
  // The value of $DWGCODEPAGE, such as ANSI_1252. An unknown one has no effect.
  void SetCodePage(std::string_view codePage);

  [[nodiscard]] std::string Decode(std::string_view raw) const;
  // Throws DxfFault for a name of more than kLongestName bytes.
  [[nodiscard]] std::string DecodeName(const Group& group) const;
  // A name by which things are looked up, without regard to case.
  [[nodiscard]] std::string DecodeFoldedName(const Group& group) const;

  // A text of any length, without control characters; a tab becomes "^I". Where backslashes start codes, an
  // escaped character that would start one is replaced by the code for itself.
  [[nodiscard]] std::string DecodeText(std::string_view raw, Backslash backslash) const;

 private:
  [[nodiscard]] std::string ToUtf8(std::string_view raw) const;

  static constexpr const char* kUsualCodePage = "CP1252";

  std::string codePage_ = kUsualCodePage;  // as system/code_pages.h names it
  bool isUtf8_ = false;
  bool mayBeUtf8_ = true;  // what is well-formed UTF-8 counts as such
};

}  // namespace hdiplot
