#include "platform/font_names.h"

#include <algorithm>
#include <utility>

#include "platform/sfnt_bytes.h"

namespace hdi {
namespace {

constexpr uint16_t kUnicodePlatform = 0;
constexpr uint16_t kMacintoshPlatform = 1;
constexpr uint16_t kMicrosoftPlatform = 3;
constexpr uint16_t kAmericanEnglish = 0x409;
constexpr int kUnreadable = 9;

struct NameRecord {
  uint16_t platform;
  uint16_t encoding;
  uint16_t language;
  std::span<const uint8_t> bytes;
};

bool IsAscii(std::span<const uint8_t> bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](uint8_t byte) { return byte >= 0x20 && byte < 0x7F; });
}

// Distance from what an English reader prefers; kUnreadable for other encodings.
int Distance(const NameRecord& record) {
  const bool wholeUnits = record.bytes.size() % 2 == 0;
  switch (record.platform) {
    case kMicrosoftPlatform:
      if (!wholeUnits || (record.encoding != 0 && record.encoding != 1 && record.encoding != 10))
        return kUnreadable;
      if (record.language == kAmericanEnglish) return 0;
      return (record.language & 0x3FF) == (kAmericanEnglish & 0x3FF) ? 1 : 4;
    case kUnicodePlatform:
      return wholeUnits ? 2 : kUnreadable;
    case kMacintoshPlatform:
      return IsAscii(record.bytes) ? 3 : kUnreadable;
    default:
      return kUnreadable;
  }
}

std::u16string Decode(const NameRecord& record) {
  if (record.platform == kMacintoshPlatform) return {record.bytes.begin(), record.bytes.end()};
  std::u16string text;
  for (size_t i = 0; i < record.bytes.size(); i += 2) text += static_cast<char16_t>(ReadU16(record.bytes, i));
  return text;
}

}  // namespace

std::vector<std::u16string> FontNames(std::span<const uint8_t> nameTable, uint16_t nameId) {
  constexpr size_t kHeaderSize = 6;
  constexpr size_t kRecordSize = 12;
  if (nameTable.size() < kHeaderSize) return {};
  const size_t count =
      std::min<size_t>(ReadU16(nameTable, 2), (nameTable.size() - kHeaderSize) / kRecordSize);
  const size_t strings = ReadU16(nameTable, 4);

  std::vector<std::pair<int, std::u16string>> found;
  for (size_t i = 0; i < count; ++i) {
    const auto bytes = nameTable.subspan(kHeaderSize + i * kRecordSize, kRecordSize);
    const size_t length = ReadU16(bytes, 8);
    const size_t start = strings + ReadU16(bytes, 10);
    if (ReadU16(bytes, 6) != nameId || start + length > nameTable.size()) continue;
    const NameRecord record{ReadU16(bytes, 0), ReadU16(bytes, 2), ReadU16(bytes, 4),
                            nameTable.subspan(start, length)};
    if (const int distance = Distance(record); distance != kUnreadable)
      found.emplace_back(distance, Decode(record));
  }
  std::stable_sort(found.begin(), found.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });

  std::vector<std::u16string> names;
  for (auto& [distance, name] : found) {
    if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(std::move(name));
  }
  return names;
}

}  // namespace hdi
