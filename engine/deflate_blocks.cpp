// Walks the codes with tables that hold only how many bits to skip.
#include "engine/deflate_blocks.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace hdi::engine {
namespace {

static_assert(std::endian::native == std::endian::little);

class BitReader {
 public:
  explicit BitReader(std::span<const uint8_t> bytes) : bytes_(bytes) {}

  // Returns at least the next 57 bits; zeros beyond the end.
  [[nodiscard]] uint64_t Peek() const {
    const size_t byte = position_ / 8;
    uint64_t word = 0;
    if (byte + sizeof word <= bytes_.size()) {
      std::memcpy(&word, bytes_.data() + byte, sizeof word);
    } else if (byte < bytes_.size()) {
      std::memcpy(&word, bytes_.data() + byte, bytes_.size() - byte);
    }
    return word >> (position_ % 8);
  }
  void Skip(size_t bits) { position_ += bits; }
  uint32_t Take(unsigned bits) {
    const auto value = static_cast<uint32_t>(Peek() & ((uint64_t{1} << bits) - 1));
    Skip(bits);
    return value;
  }
  void Align() { position_ = (position_ + 7) / 8 * 8; }
  [[nodiscard]] size_t Position() const { return position_; }
  [[nodiscard]] bool IsPastEnd() const { return position_ > bytes_.size() * 8; }

 private:
  std::span<const uint8_t> bytes_;
  size_t position_ = 0;
};

// What follows a table entry. In the code length code, a length symbol instead.
enum Next : uint8_t { kLiteralOrLength, kDistance, kEndOfBlock, kLongCode = 0xFE, kNoCode = 0xFF };

// `bits` counts the code and its extra bits.
struct Entry {
  uint8_t bits = 0;
  uint8_t next = kNoCode;
};

constexpr unsigned kMaxCodeLength = 15;
constexpr size_t kLiteralCodes = 288;
constexpr size_t kDistanceCodes = 32;

constexpr unsigned kTableBits = 12;
constexpr size_t kTableSize = size_t{1} << kTableBits;

// A Huffman code (RFC 1951, 3.2.2), looked up by its first kTableBits bits.
class CodeTable {
 public:
  // `table` has kTableSize entries and must outlive the object.
  explicit CodeTable(std::span<Entry> table) : table_(table) {}

  // `lengths` by symbol, 0 for none; at most kLiteralCodes. `entryOf` returns a symbol's entry with the extra
  // bits alone. False if the lengths are oversubscribed.
  template <typename EntryOf>
  [[nodiscard]] bool Build(std::span<const uint8_t> lengths, EntryOf entryOf) {
    std::array<uint32_t, kMaxCodeLength + 1> count{};
    for (const uint8_t length : lengths) ++count[length];
    count[0] = 0;
    std::array<uint32_t, kMaxCodeLength + 1> code{};
    for (unsigned length = 1; length <= kMaxCodeLength; ++length) {
      code[length] = (code[length - 1] + count[length - 1]) * 2;
      if (code[length] + count[length] > 1U << length) return false;
    }
    std::ranges::fill(table_, Entry{});
    longCount_ = 0;
    for (size_t symbol = 0; symbol < lengths.size(); ++symbol) {
      const unsigned length = lengths[symbol];
      if (length == 0) continue;
      Entry entry = entryOf(symbol);
      entry.bits = static_cast<uint8_t>(entry.bits + length);
      Enter(Reversed(code[length]++, length), length, entry);
    }
    return true;
  }

  // Extends each entry over as many literals as fit in kTableBits.
  void JoinLiterals() {
    std::array<Entry, kTableSize> single;
    std::ranges::copy(table_, single.begin());
    for (size_t index = 0; index < kTableSize; ++index) {
      Entry& entry = table_[index];
      while (entry.next == kLiteralOrLength) {
        const Entry& behind = single[index >> entry.bits];
        if (behind.next != kLiteralOrLength || entry.bits + behind.bits > kTableBits) break;
        entry.bits = static_cast<uint8_t>(entry.bits + behind.bits);
      }
    }
  }

  [[nodiscard]] Entry Find(uint64_t bits) const {
    const Entry entry = table_[bits % kTableSize];
    return entry.next == kLongCode ? FindLong(bits) : entry;
  }

  // For bits whose table entry is kLongCode.
  [[nodiscard]] Entry FindLong(uint64_t bits) const {
    const auto codes = std::span(longCodes_).first(longCount_);
    const auto found =
        std::ranges::find_if(codes, [bits](const LongCode& code) { return (bits & code.mask) == code.code; });
    return found == codes.end() ? Entry{} : found->entry;
  }

 private:
  struct LongCode {
    uint32_t code;
    uint32_t mask;
    Entry entry;
  };

  // Codes are stored with their first bit lowest.
  static uint32_t Reversed(uint32_t code, unsigned length) {
    uint32_t reversed = 0;
    for (unsigned i = 0; i < length; ++i) reversed |= (code >> i & 1U) << (length - 1 - i);
    return reversed;
  }

  void Enter(uint32_t code, unsigned length, Entry entry) {
    if (length > kTableBits) {
      table_[code % kTableSize] = {0, kLongCode};
      longCodes_[longCount_++] = {code, (1U << length) - 1, entry};
      return;
    }
    for (size_t index = code; index < kTableSize; index += size_t{1} << length) table_[index] = entry;
  }

  std::span<Entry> table_;
  std::array<LongCode, kLiteralCodes> longCodes_;
  size_t longCount_ = 0;
};

// RFC 1951, 3.2.5.
Entry LiteralEntry(size_t symbol) {
  if (symbol < 256) return {0, kLiteralOrLength};
  if (symbol == 256) return {0, kEndOfBlock};
  if (symbol > 285) return {0, kNoCode};
  const size_t extra = symbol < 265 || symbol == 285 ? 0 : (symbol - 261) / 4;
  return {static_cast<uint8_t>(extra), kDistance};
}

Entry DistanceEntry(size_t symbol) {
  if (symbol > 29) return {0, kNoCode};
  return {static_cast<uint8_t>(symbol < 2 ? 0 : (symbol - 2) / 2), kLiteralOrLength};
}

class BlockWalk {
 public:
  explicit BlockWalk(std::span<const uint8_t> deflate) : reader_(deflate) {}

  std::optional<FinalBlock> ToFinalBlock() {
    for (;;) {
      const size_t begin = reader_.Position();
      const bool isFinal = reader_.Take(1) != 0;
      if (!PassBlock(reader_.Take(2)) || reader_.IsPastEnd()) return std::nullopt;
      if (isFinal) return FinalBlock{begin, reader_.Position()};
    }
  }

 private:
  // Skips a block after its first three bits (RFC 1951, 3.2.3).
  bool PassBlock(uint32_t type) {
    switch (type) {
      case 0:
        reader_.Align();
        reader_.Skip(16 + 8 * size_t{reader_.Take(16)});  // LEN, then NLEN
        return true;
      case 1:
        return BuildFixedCodes() && PassCodes();
      case 2:
        return ReadCodes() && PassCodes();
      default:
        return false;
    }
  }

  // RFC 1951, 3.2.6.
  bool BuildFixedCodes() {
    std::array<uint8_t, kLiteralCodes + kDistanceCodes> lengths{};
    std::fill_n(lengths.begin(), 144, uint8_t{8});
    std::fill_n(lengths.begin() + 144, 112, uint8_t{9});
    std::fill_n(lengths.begin() + 256, 24, uint8_t{7});
    std::fill_n(lengths.begin() + 280, 8, uint8_t{8});
    std::fill_n(lengths.begin() + kLiteralCodes, kDistanceCodes, uint8_t{5});
    return BuildCodes(lengths, kLiteralCodes);
  }

  // RFC 1951, 3.2.7.
  bool ReadCodes() {
    const size_t literals = reader_.Take(5) + 257;
    const size_t distances = reader_.Take(5) + 1;
    const size_t lengthCodes = reader_.Take(4) + 4;
    if (literals > kLiteralCodes) return false;
    constexpr std::array<uint8_t, 19> kOrder = {16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                11, 4,  12, 3, 13, 2, 14, 1, 15};
    std::array<uint8_t, kOrder.size()> lengthLengths{};
    for (size_t i = 0; i < lengthCodes; ++i) {
      lengthLengths[kOrder[i]] = static_cast<uint8_t>(reader_.Take(3));
    }
    const auto asItself = [](size_t symbol) { return Entry{0, static_cast<uint8_t>(symbol)}; };
    if (!lengthCode_.Build(lengthLengths, asItself)) return false;
    std::array<uint8_t, kLiteralCodes + kDistanceCodes> lengths{};
    const std::span<uint8_t> all = std::span(lengths).first(literals + distances);
    return ReadLengths(all) && BuildCodes(all, literals);
  }

  bool ReadLengths(std::span<uint8_t> lengths) {
    for (size_t i = 0; i < lengths.size();) {
      const Entry entry = lengthCode_.Find(reader_.Peek());
      if (entry.next == kNoCode || reader_.IsPastEnd()) return false;
      reader_.Skip(entry.bits);
      if (entry.next < 16) {
        lengths[i++] = entry.next;
        continue;
      }
      if (entry.next == 16 && i == 0) return false;
      const uint8_t repeated = entry.next == 16 ? lengths[i - 1] : uint8_t{0};
      size_t count = 0;
      if (entry.next == 16) count = 3 + reader_.Take(2);
      if (entry.next == 17) count = 3 + reader_.Take(3);
      if (entry.next == 18) count = 11 + reader_.Take(7);
      if (count > lengths.size() - i) return false;
      std::fill_n(lengths.begin() + static_cast<std::ptrdiff_t>(i), count, repeated);
      i += count;
    }
    return true;
  }

  bool BuildCodes(std::span<const uint8_t> lengths, size_t literals) {
    if (!literalCode_.Build(lengths.first(literals), LiteralEntry) ||
        !distanceCode_.Build(lengths.subspan(literals), DistanceEntry)) {
      return false;
    }
    literalCode_.JoinLiterals();
    return true;
  }

  // Skips to the end of the block. The table for the next code is looked up, not branched on: the branch
  // would be unpredictable.
  bool PassCodes() {
    Entry entry{0, kLiteralOrLength};
    const auto pass = [&](uint64_t& bits) {
      const size_t table = entry.next * kTableSize;
      entry = entries_[table + bits % kTableSize];
      if (entry.next == kLongCode) [[unlikely]]
        entry = (table == 0 ? literalCode_ : distanceCode_).FindLong(bits);
      bits >>= entry.bits;
      reader_.Skip(entry.bits);
      return entry.next <= kDistance;
    };
    // A length takes at most 20 bits and a distance 28, so one peek is enough for both.
    for (;;) {
      uint64_t bits = reader_.Peek();
      for (int code = 0; code < 2; ++code) {
        if (!pass(bits)) return entry.next == kEndOfBlock;
      }
      if (reader_.IsPastEnd()) return false;
    }
  }

  BitReader reader_;
  std::array<Entry, 2 * kTableSize> entries_;  // indexed by Next
  CodeTable lengthCode_{std::span(entries_).first(kTableSize)};
  CodeTable literalCode_{std::span(entries_).first(kTableSize)};
  CodeTable distanceCode_{std::span(entries_).last(kTableSize)};
};

}  // namespace

std::optional<FinalBlock> FindFinalBlock(std::span<const uint8_t> deflate) {
  return BlockWalk(deflate).ToFinalBlock();
}

}  // namespace hdi::engine
