// Parses the engine's ToUnicode maps as the engine does, for single units: one section of single codes and
// one of ranges, with two-byte codes, and ranges within one value of the high byte.
#include "engine/unit_codes.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <string_view>

#include "core/fpdfapi/parser/cpdf_simple_parser.h"

namespace hdi::engine {
namespace {

constexpr uint32_t kUnits = 0x10000;
constexpr size_t kUnitDigits = 4;

// The hexadecimal digits of a word, without the angle brackets.
std::string_view Digits(ByteStringView word) {
  const std::string_view text(word.unterminated_c_str(), word.GetLength());
  return text.size() < 2 || text.front() != '<' ? std::string_view() : text.substr(1, text.size() - 2);
}

uint32_t Number(std::string_view digits) {
  uint32_t number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number, 16);
  return number;
}

class Table {
 public:
  explicit Table(std::span<const uint8_t> toUnicode) : parser_(toUnicode) {
    for (ByteStringView word = parser_.GetWord(); !word.IsEmpty(); word = parser_.GetWord()) {
      if (word == "beginbfchar") AddCodes();
      if (word == "beginbfrange") AddRanges();
    }
  }

  [[nodiscard]] std::vector<uint16_t> Codes() const {
    std::vector<uint16_t> codes(kUnits);
    std::ranges::transform(lowest_, codes.begin(),
                           [](uint32_t code) { return static_cast<uint16_t>(code == kNone ? 0 : code); });
    return codes;
  }

 private:
  static constexpr uint32_t kNone = 0x10000;

  void AddCodes() {
    for (ByteStringView word = parser_.GetWord(); IsCode(word); word = parser_.GetWord()) {
      const uint32_t code = Number(Digits(word));
      Add(code, Target(Digits(parser_.GetWord())));
    }
  }

  void AddRanges() {
    for (ByteStringView word = parser_.GetWord(); IsCode(word); word = parser_.GetWord()) {
      const uint32_t first = Number(Digits(word));
      const uint32_t last = Number(Digits(parser_.GetWord()));
      const ByteStringView start = parser_.GetWord();
      if (start == "[") {
        for (uint32_t code = first; code <= last; ++code) Add(code, Target(Digits(parser_.GetWord())));
        parser_.GetWord();
        continue;
      }
      const std::string_view digits = Digits(start);
      for (uint32_t code = first; code <= last; ++code) {
        Add(code, digits.size() > kUnitDigits ? Target(digits) : Number(digits) + (code - first));
      }
    }
  }

  static bool IsCode(ByteStringView word) { return Digits(word).size() == kUnitDigits; }

  // Returns what a code maps to. The engine keeps sequences of several units in a list and stores only their
  // list index, above a low half of 0xFFFF; so the first sequence answers to U+FFFF.
  uint32_t Target(std::string_view digits) {
    if (digits.size() <= kUnitDigits) return Number(digits);
    const uint32_t place = sequences_++;
    return place < kUnits ? place << 16 | 0xFFFF : 0;
  }

  void Add(uint32_t code, uint32_t target) {
    if (target < kUnits) lowest_[target] = std::min(lowest_[target], code);
  }

  CPDF_SimpleParser parser_;
  std::vector<uint32_t> lowest_ = std::vector<uint32_t>(kUnits, kNone);
  uint32_t sequences_ = 0;
};

}  // namespace

std::vector<uint16_t> CodesByUnit(std::span<const uint8_t> toUnicode) { return Table(toUnicode).Codes(); }

}  // namespace hdi::engine
