// Inverts a font's ToUnicode map.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace hdi::engine {

// Returns the character code of each of the 65,536 UTF-16 units by a ToUnicode CMap (ISO 32000-1:2008,
// 9.10.3) written by the engine: the lowest code that maps to the unit, 0 if there is none. These are the
// codes that the engine itself finds by searching the whole map for every unit.
[[nodiscard]] std::vector<uint16_t> CodesByUnit(std::span<const uint8_t> toUnicode);

}  // namespace hdi::engine
