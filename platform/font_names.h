// The OpenType "name" table: the names of a font.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace hdi {

// Returns the distinct strings with that name ID, best for an English reader first.
[[nodiscard]] std::vector<std::u16string> FontNames(std::span<const uint8_t> nameTable, uint16_t nameId);

}  // namespace hdi
