// Big-endian numbers in the tables of a TrueType font.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace hdi {

using SfntTable = std::vector<uint8_t>;

// Both read at `at`; the bytes must lie in the table.
[[nodiscard]] inline uint16_t ReadU16(std::span<const uint8_t> table, size_t at) {
  return static_cast<uint16_t>(table[at] << 8 | table[at + 1]);
}

[[nodiscard]] inline uint32_t ReadU32(std::span<const uint8_t> table, size_t at) {
  return uint32_t{ReadU16(table, at)} << 16 | ReadU16(table, at + 2);
}

inline void WriteU16(std::span<uint8_t> table, size_t at, size_t value) {
  table[at] = static_cast<uint8_t>(value >> 8);
  table[at + 1] = static_cast<uint8_t>(value);
}

inline void WriteU32(std::span<uint8_t> table, size_t at, size_t value) {
  WriteU16(table, at, value >> 16);
  WriteU16(table, at + 2, value);
}

inline void AppendU16(SfntTable& table, size_t value) {
  table.resize(table.size() + 2);
  WriteU16(table, table.size() - 2, value);
}

inline void AppendU32(SfntTable& table, size_t value) {
  AppendU16(table, value >> 16);
  AppendU16(table, value);
}

}  // namespace hdi
