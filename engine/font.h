// A font of the engine's document: a composite TrueType font under Identity-H whose character codes are glyph
// numbers of the embedded file (ISO 32000-1:2008, 9.7).
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace hdi::engine {

class Document;

class Font {
 public:
  // Embeds the font file `bytes` whole, with widths and a ToUnicode map from its own character map. Of a
  // collection the first face is taken. Null when the engine refuses the file, or would make a font of it
  // that shows nothing: cut off, without outlines, without a character map. The font must be destroyed before
  // the document; what it has put into the document stays.
  [[nodiscard]] static std::unique_ptr<Font> Load(Document& document, std::span<const uint8_t> bytes);

  Font(const Font&) = delete;
  Font& operator=(const Font&) = delete;
  ~Font();

  // Of the font's dictionary.
  [[nodiscard]] uint32_t ObjectNumber() const;

  // Appends the character codes of the units, each looked up by itself: the codes that the engine's own text
  // objects would hold.
  void AppendCodes(std::u16string_view units, std::vector<uint16_t>& codes) const;

 private:
  struct Implementation;
  explicit Font(std::unique_ptr<Implementation> implementation);
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace hdi::engine
