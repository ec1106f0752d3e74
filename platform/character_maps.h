// The kinds of character maps in a font (OpenType "cmap" table).
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace hdi {

// The table's header and one encoding record, in bytes.
inline constexpr size_t kCharacterMapHeaderSize = 4;
inline constexpr size_t kEncodingRecordSize = 8;

enum class CharacterMaps { kNone, kSymbol, kUnicode };  // kSymbol: a Microsoft symbol map and no Unicode map

// Finds the kinds by the table's encoding records; `table` may be cut off after or within these.
[[nodiscard]] CharacterMaps FindCharacterMaps(std::span<const uint8_t> table);

}  // namespace hdi
