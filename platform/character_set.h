// A set of 16-bit characters, iterated in ascending order. Every character of a plot is added, mostly
// repeatedly, so adding only sets a bit.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace hdi {

class CharacterSet {
 public:
  void Add(char16_t unit) { words_[unit / kBits] |= uint64_t{1} << unit % kBits; }

  [[nodiscard]] bool Contains(char16_t unit) const { return (words_[unit / kBits] >> unit % kBits & 1) != 0; }

  // Returns the characters in ascending order.
  [[nodiscard]] std::vector<uint16_t> Characters() const {
    std::vector<uint16_t> characters;
    for (size_t i = 0; i < words_.size(); ++i) {
      for (uint64_t rest = words_[i]; rest != 0; rest &= rest - 1) {
        characters.push_back(static_cast<uint16_t>(i * kBits + static_cast<size_t>(std::countr_zero(rest))));
      }
    }
    return characters;
  }

  bool operator==(const CharacterSet&) const = default;

 private:
  static constexpr size_t kBits = 64;
  std::vector<uint64_t> words_ = std::vector<uint64_t>(0x10000 / kBits);
};

// The characters that a job uses, by the full name of their font.
using FontUsage = std::map<std::u16string, CharacterSet>;

}  // namespace hdi
