// The bytes of a font: where they come from, and reading them.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

#include "platform/font_services.h"

namespace hdi {

struct FreeBlock {
  void operator()(uint8_t* block) const { std::free(block); }
};

// Bytes in a block from malloc: of a whole font file, of a whole collection, or of a subset. No block: none.
struct FontData {
  std::unique_ptr<uint8_t, FreeBlock> block;
  uint32_t size = 0;

  [[nodiscard]] std::span<const uint8_t> Bytes() const { return {block.get(), size}; }
};

// What a font is read from: a file of its own, or a collection of which it is a member.
struct FontDataSource {
  bool isSingleFile = false;
  int32_t memberIndex = -1;  // in a collection, from 0
  FontData collection;       // which has been read to find the member
};

// The face name of a font, which may fill its field to the last unit.
[[nodiscard]] std::u16string_view FaceName(const LOGFONTW& font);

// Nothing for a font without outline data, and for one of a collection that does not hold the face.
[[nodiscard]] std::optional<FontDataSource> ClassifyFontData(const FontServices& services,
                                                             const LOGFONTW& font);

// Reads the whole of a table, kWholeFontFile or kFontCollection. No block when it can't be had.
[[nodiscard]] FontData ReadFontData(const PlatformFont& font, uint32_t table);

}  // namespace hdi
