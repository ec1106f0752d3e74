// An embedded font: a composite TrueType font with Identity-H, whose character codes are glyph numbers of the
// embedded file (ISO 32000-1:2008, 9.7).
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
  // Embeds the whole font file `bytes`, with widths and a ToUnicode map from its own character map. Uses the
  // first face of a collection. Returns null if the engine refuses the file or if the font would show
  // nothing: truncated, without outlines or without a character map. The font must be destroyed before the
  // document; what it added to the document stays.
  [[nodiscard]] static std::unique_ptr<Font> Load(Document& document, std::span<const uint8_t> bytes);

  Font(const Font&) = delete;
  Font& operator=(const Font&) = delete;
  ~Font();

  // Object number of the font dictionary.
  [[nodiscard]] uint32_t ObjectNumber() const;

  // Appends the character code of each unit, looked up one by one: the same codes that the engine's own text
  // objects hold.
  void AppendCodes(std::u16string_view units, std::vector<uint16_t>& codes) const;

 private:
  struct Implementation;
  explicit Font(std::unique_ptr<Implementation> implementation);
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace hdi::engine
