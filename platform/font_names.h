// The table "name" of OpenType: what a font calls itself.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace hdi {

// The strings of a table "name" with that name id, the best one for a reader of English first, each one once.
[[nodiscard]] std::vector<std::u16string> FontNames(std::span<const uint8_t> nameTable, uint16_t nameId);

}  // namespace hdi
