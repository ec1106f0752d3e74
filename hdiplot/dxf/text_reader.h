// The lettering of a DXF: TEXT, ATTRIB, ATTDEF and MTEXT, and the styles that they name.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "hdiplot/dxf/dxf_object.h"
#include "hdiplot/dxf/name_cache.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

// In bytes. Longer texts are no texts: they are cut, so that no file takes all the memory.
inline constexpr size_t kLongestText = 1 << 18;

// Cuts a text that is longer, in front of a character. Whether it was.
[[nodiscard]] bool CutLongText(std::string& utf8);

class TextReader {
 public:
  // Both have to outlive the reader. The styles are those read so far, by upper-case name.
  TextReader(NameCache& names, const std::map<std::string, TextStyle>& styles)
      : names_(names), styles_(styles) {}

  // All of these throw DxfFault for an object that makes no sense.

  struct NamedStyle {
    std::string name;  // upper case
    TextStyle style;
  };
  // Nothing for the entries that stand for a file of shapes.
  std::optional<NamedStyle> ReadStyle(const DxfObject& entry) const;

  // A TEXT, ATTRIB or ATTDEF; nothing where none of it can be seen.
  std::optional<TextEntity> ReadText(const DxfObject& object, bool inBlock) const;
  std::optional<MTextEntity> ReadMText(const DxfObject& object) const;

 private:
  Name StyleOf(const DxfObject& object) const;
  double HeightOf(const DxfObject& object, const std::string& style) const;

  NameCache& names_;
  const std::map<std::string, TextStyle>& styles_;
};

}  // namespace hdiplot
