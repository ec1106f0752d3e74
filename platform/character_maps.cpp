#include "platform/character_maps.h"

#include <algorithm>

#include "platform/sfnt_bytes.h"

namespace hdi {

CharacterMaps FindCharacterMaps(std::span<const uint8_t> table) {
  CharacterMaps found = CharacterMaps::kNone;
  if (table.size() < kCharacterMapHeaderSize) return found;
  const size_t count =
      std::min<size_t>(ReadU16(table, 2), (table.size() - kCharacterMapHeaderSize) / kEncodingRecordSize);
  for (size_t i = 0; i < count; ++i) {
    const size_t at = kCharacterMapHeaderSize + i * kEncodingRecordSize;
    const uint16_t platform = ReadU16(table, at);
    const uint16_t encoding = ReadU16(table, at + 2);
    const bool isMicrosoft = platform == 3;
    if (platform == 0 || (isMicrosoft && (encoding == 1 || encoding == 10))) return CharacterMaps::kUnicode;
    if (isMicrosoft && encoding == 0) found = CharacterMaps::kSymbol;
  }
  return found;
}

}  // namespace hdi
