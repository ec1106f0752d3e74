// Reads and writes the Microsoft-platform character map of a TrueType font.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "platform/linux/harfbuzz.h"

namespace hdi {

struct MappedCharacter {
  uint16_t code;
  uint16_t glyph;
};

// Returns those of the codes that the face's Microsoft map has, ascending and without duplicates, whatever
// its encoding. In a symbol map, codes below 0x100 also stand for those from 0xF000. Nothing if the face has
// no such map.
[[nodiscard]] std::optional<std::vector<MappedCharacter>> LookUpCharacters(hb_face_t* face,
                                                                           std::span<const uint16_t> codes);

// Returns a "cmap" table with a single 16-bit Unicode map of the characters, which must be ascending. Empty
// if they are too scattered for such a map.
[[nodiscard]] SfntTable WriteCharacterMap(std::span<const MappedCharacter> characters);

}  // namespace hdi
