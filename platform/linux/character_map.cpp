// HarfBuzz parses character maps, but selects one by its own rules. It is therefore given a table with just
// the one map that counts here.
#include "platform/linux/character_map.h"

#include <algorithm>
#include <array>
#include <bit>

namespace hdi {
namespace {

constexpr uint16_t kMicrosoftPlatform = 3;
constexpr uint16_t kSymbolEncoding = 0;
constexpr uint16_t kUnicodeEncoding = 1;
constexpr uint16_t kFullUnicodeEncoding = 10;

constexpr size_t kHeaderSize = 4;
constexpr size_t kRecordSize = 8;

// Every map of format 4 ends with a segment for this code.
constexpr uint16_t kLastCode = 0xFFFF;

struct EncodingRecord {
  uint16_t encoding;
  uint32_t offset;
};

// Ranks Unicode encodings first, wider before narrower.
int Rank(uint16_t encoding) {
  constexpr std::array kByPreference = {kFullUnicodeEncoding, kUnicodeEncoding, kSymbolEncoding};
  return static_cast<int>(std::ranges::find(kByPreference, encoding) - kByPreference.begin());
}

std::optional<EncodingRecord> FindMicrosoftMap(std::span<const uint8_t> table) {
  if (table.size() < kHeaderSize) return std::nullopt;
  const size_t records = std::min<size_t>(ReadU16(table, 2), (table.size() - kHeaderSize) / kRecordSize);
  std::optional<EncodingRecord> best;
  for (size_t i = 0; i < records; ++i) {
    const size_t at = kHeaderSize + i * kRecordSize;
    const EncodingRecord record{ReadU16(table, at + 2), ReadU32(table, at + 4)};
    if (ReadU16(table, at) != kMicrosoftPlatform || record.offset >= table.size()) continue;
    if (!best || Rank(record.encoding) < Rank(best->encoding)) best = record;
  }
  return best;
}

SfntTable WriteHeader(uint16_t encoding) {
  SfntTable table;
  AppendU16(table, 0);
  AppendU16(table, 1);
  AppendU16(table, kMicrosoftPlatform);
  AppendU16(table, encoding);
  AppendU32(table, kHeaderSize + kRecordSize);
  return table;
}

// Characters with close codes.
using Segment = std::span<const MappedCharacter>;

// A missing code within a segment costs two bytes, another segment eight.
std::vector<Segment> SplitIntoSegments(std::span<const MappedCharacter> characters) {
  constexpr int kLargestStep = 4;
  std::vector<Segment> segments;
  size_t start = 0;
  for (size_t i = 1; i <= characters.size(); ++i) {
    if (i < characters.size() && characters[i].code - characters[i - 1].code <= kLargestStep) continue;
    segments.push_back(characters.subspan(start, i - start));
    start = i;
  }
  return segments;
}

uint16_t Delta(const MappedCharacter& character) {
  return static_cast<uint16_t>(character.glyph - character.code);
}

// Glyphs that are consecutive like their codes need no list.
bool NeedsList(Segment segment) {
  const auto isAsFirst = [&](const MappedCharacter& each) { return Delta(each) == Delta(segment.front()); };
  return static_cast<size_t>(segment.back().code - segment.front().code) + 1 != segment.size() ||
         !std::ranges::all_of(segment, isAsFirst);
}

void AppendGlyphList(SfntTable& list, Segment segment) {
  uint16_t code = segment.front().code;
  for (const MappedCharacter& character : segment) {
    for (; code < character.code; ++code) AppendU16(list, 0);
    AppendU16(list, character.glyph);
    ++code;
  }
}

}  // namespace

std::optional<std::vector<MappedCharacter>> LookUpCharacters(hb_face_t* face,
                                                             std::span<const uint16_t> codes) {
  const HarfBuzzBlob source(hb_face_reference_table(face, HB_TAG('c', 'm', 'a', 'p')));
  const std::span<const uint8_t> table = BlobBytes(source);
  const std::optional<EncodingRecord> record = FindMicrosoftMap(table);
  if (!record) return std::nullopt;

  SfntTable single = WriteHeader(record->encoding == kSymbolEncoding ? kSymbolEncoding : kUnicodeEncoding);
  single.insert(single.end(), table.begin() + record->offset, table.end());
  const HarfBuzzFace mapFace(hb_face_builder_create());
  hb_face_builder_add_table(mapFace.get(), HB_TAG('c', 'm', 'a', 'p'), MakeBlob(single).get());
  const HarfBuzzFont map(hb_font_create(mapFace.get()));

  std::vector<uint16_t> sorted(codes.begin(), codes.end());
  std::ranges::sort(sorted);
  std::vector<MappedCharacter> found;
  for (const uint16_t code : sorted) {
    if (code == kLastCode || (!found.empty() && found.back().code == code)) continue;
    hb_codepoint_t glyph = 0;
    if (!hb_font_get_nominal_glyph(map.get(), code, &glyph) || glyph == 0 || glyph > 0xFFFF) continue;
    found.push_back({code, static_cast<uint16_t>(glyph)});
  }
  return found;
}

SfntTable WriteCharacterMap(std::span<const MappedCharacter> characters) {
  constexpr MappedCharacter kEnd{kLastCode, 0};
  std::vector<Segment> segments = SplitIntoSegments(characters);
  segments.emplace_back(&kEnd, 1);
  const size_t count = segments.size();

  SfntTable offsets;
  SfntTable list;
  for (size_t i = 0; i < count; ++i) {
    const bool isListed = NeedsList(segments[i]);
    // Relative to the offset's own position; glyph lists follow all offsets.
    AppendU16(offsets, isListed ? 2 * (count - i) + list.size() : 0);
    if (isListed) AppendGlyphList(list, segments[i]);
  }
  const size_t size = 16 + 8 * count + list.size();
  if (size > 0xFFFF) return {};

  const size_t searched = std::bit_floor(count);
  SfntTable table = WriteHeader(kUnicodeEncoding);
  for (const size_t value : {size_t{4}, size, size_t{0}, 2 * count, 2 * searched,
                             static_cast<size_t>(std::bit_width(searched)) - 1, 2 * (count - searched)}) {
    AppendU16(table, value);
  }
  for (const Segment& segment : segments) AppendU16(table, segment.back().code);
  AppendU16(table, 0);
  for (const Segment& segment : segments) AppendU16(table, segment.front().code);
  for (const Segment& segment : segments) AppendU16(table, NeedsList(segment) ? 0 : Delta(segment.front()));
  table.insert(table.end(), offsets.begin(), offsets.end());
  table.insert(table.end(), list.begin(), list.end());
  return table;
}

}  // namespace hdi
