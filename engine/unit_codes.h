// The way back through a font's ToUnicode map.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace hdi::engine {

// The character code of each of the 65,536 units by a ToUnicode CMap (ISO 32000-1:2008, 9.10.3) of the
// engine's making: the lowest code that maps to the unit, 0 when there is none. They are the codes that the
// engine itself finds, which goes through the whole map for every single unit.
[[nodiscard]] std::vector<uint16_t> CodesByUnit(std::span<const uint8_t> toUnicode);

}  // namespace hdi::engine
