// TEXT, ATTRIB, ATTDEF and MTEXT, and the text styles.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "hdiplot/dxf/dxf_object.h"
#include "hdiplot/dxf/text_decoder.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

// In bytes. Longer texts are cut, to limit the memory of a faulty file.
inline constexpr size_t kLongestText = 1 << 18;

// Cuts a text that is longer, between characters. Returns whether it was.
[[nodiscard]] bool CutLongText(std::string& utf8);

// None for an entry that stands for a file of shapes. Throws DxfFault, like the next.
[[nodiscard]] std::optional<TextStyle> ReadStyle(const DxfObject& entry, const TextDecoder& decoder);

class TextReader {
 public:
  // Both have to outlive the reader. The styles are those read so far, by folded name.
  TextReader(NameCache& names, const std::map<std::string, TextStyle>& styles)
      : names_(names), styles_(styles) {}

  // A TEXT, ATTRIB or ATTDEF. None if nothing of it is visible, like the next.
  [[nodiscard]] std::optional<TextEntity> ReadText(const DxfObject& object, bool inBlock) const;
  // An ATTDEF as the texts of its attributes look.
  [[nodiscard]] std::optional<TextEntity> ReadDefinition(const DxfObject& object) const;
  [[nodiscard]] std::optional<MTextEntity> ReadMText(const DxfObject& object) const;

 private:
  [[nodiscard]] std::optional<TextEntity> ReadForm(const DxfObject& object, std::string&& shown) const;
  Name StyleOf(const DxfObject& object) const;
  double HeightOf(const DxfObject& object, const std::string& style) const;

  NameCache& names_;
  const std::map<std::string, TextStyle>& styles_;
};

}  // namespace hdiplot
