// Reading the bytes of a font from the platform.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include "platform/font_services.h"
#include "platform/memory.h"

namespace hdi {

// A malloc'ed block with a font file, a collection or a subset. A null block means no data.
struct FontData {
  std::unique_ptr<uint8_t, MallocDeleter> block;
  uint32_t size = 0;

  [[nodiscard]] std::span<const uint8_t> Bytes() const { return {block.get(), size}; }
};

// Where a font's bytes come from: a file of its own, or a member of a collection.
struct FontDataSource {
  bool isSingleFile = false;
  int32_t memberIndex = -1;  // in the collection, from 0
  FontData collection;       // already read to find the member
};

// Returns nothing for a font without outline data, and for a collection that does not hold the face.
[[nodiscard]] std::optional<FontDataSource> ClassifyFontData(const FontServices& services,
                                                             const LOGFONTW& font);

// Reads a whole table: kWholeFontFile or kFontCollection. The block is null on failure.
[[nodiscard]] FontData ReadFontData(const PlatformFont& font, uint32_t table);

}  // namespace hdi
