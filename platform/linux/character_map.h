// The character map of a TrueType font: that of the Microsoft platform, read from a source and written for a
// subset.
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

// Those of the codes that the face's Microsoft map has, ascending and each once, whatever the map's encoding.
// In a symbol map the codes below 0x100 stand for those from 0xF000 on as well. Nothing when the face has no
// such map.
[[nodiscard]] std::optional<std::vector<MappedCharacter>> LookUpCharacters(hb_face_t* face,
                                                                           std::span<const uint16_t> codes);

// A table "cmap" with one Unicode map of 16 bits for the characters, which must ascend. Empty when they lie
// so scattered that such a map can't hold them.
[[nodiscard]] SfntTable WriteCharacterMap(std::span<const MappedCharacter> characters);

}  // namespace hdi
