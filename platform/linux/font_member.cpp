// Extracts a member of a collection as a font file. Both have the same tables; only the directory is
// rewritten.
#include <algorithm>
#include <bit>

#include "platform/linux/font_file.h"

namespace hdi {
namespace {

constexpr size_t kHeaderSize = 12;
constexpr size_t kRecordSize = 16;
constexpr uint32_t kHead = FontTag("head");
constexpr size_t kChecksumAdjustment = 8;  // offset in "head"
constexpr uint32_t kChecksumOfFonts = 0xB1B0AFBA;

// Sums whole 32-bit words; padding bytes of the last one must be included.
uint32_t Checksum(std::span<const uint8_t> bytes) {
  uint32_t sum = 0;
  for (size_t i = 0; i + 4 <= bytes.size(); i += 4) sum += ReadU32(bytes, i);
  return sum;
}

void PutHeader(std::vector<uint8_t>& font, uint32_t version, size_t tableCount) {
  const size_t largestPower = std::bit_floor(tableCount);
  WriteU32(font, 0, version);
  WriteU16(font, 4, tableCount);
  WriteU16(font, 6, largestPower * kRecordSize);
  WriteU16(font, 8, static_cast<size_t>(std::bit_width(largestPower)) - 1);
  WriteU16(font, 10, (tableCount - largestPower) * kRecordSize);
}

}  // namespace

std::vector<uint8_t> PlainFont(const FontFile& file, const FontMember& member) {
  std::vector<FontTable> tables = member.tables;
  std::erase_if(tables,
                [](const FontTable& table) { return table.tag == FontTag("DSIG"); });  // signs the whole file
  std::sort(tables.begin(), tables.end(),
            [](const FontTable& a, const FontTable& b) { return a.tag < b.tag; });
  if (tables.empty()) return {};

  std::vector<uint8_t> font(kHeaderSize + kRecordSize * tables.size());
  PutHeader(font, member.version, tables.size());
  size_t adjustment = 0;
  for (size_t i = 0; i < tables.size(); ++i) {
    const size_t start = font.size();
    const size_t paddedLength = (size_t{tables[i].length} + 3) / 4 * 4;
    // Only overlapping tables can exceed the file's size plus padding.
    if (start + paddedLength > 2 * file.Size()) return {};
    font.resize(start + paddedLength);
    const std::span<uint8_t> bytes = std::span(font).subspan(start);
    if (!file.Read(tables[i].offset, bytes.first(tables[i].length))) return {};
    if (tables[i].tag == kHead && paddedLength >= kChecksumAdjustment + 4) {
      adjustment = start + kChecksumAdjustment;
      WriteU32(font, adjustment, 0);
    }
    const size_t record = kHeaderSize + kRecordSize * i;
    WriteU32(font, record, tables[i].tag);
    WriteU32(font, record + 4, Checksum(bytes));
    WriteU32(font, record + 8, static_cast<uint32_t>(start));
    WriteU32(font, record + 12, tables[i].length);
  }
  if (adjustment != 0) WriteU32(font, adjustment, kChecksumOfFonts - Checksum(font));
  return font;
}

}  // namespace hdi
