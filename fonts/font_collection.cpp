// Parses the collection header, the table directories and the name tables (OpenType, "Font file" and "name").
#include "fonts/font_collection.h"

#include <cstddef>

namespace hdi {
namespace {

constexpr uint32_t kCollectionTag = 0x74746366;  // "ttcf"
constexpr uint32_t kNameTag = 0x6E616D65;        // "name"
constexpr uint16_t kFamilyName = 1;
constexpr uint32_t kUnicodePlatform = 0;
constexpr uint32_t kMicrosoftPlatform = 3;

// Reads consecutive big-endian numbers. Bytes beyond the end read as 0.
class Reader {
 public:
  Reader(std::span<const uint8_t> bytes, size_t position) : bytes_(bytes), position_(position) {}

  uint16_t Read16() { return static_cast<uint16_t>(Read(2)); }
  uint32_t Read32() { return Read(4); }
  void Skip(size_t count) { position_ += count; }

  // Whether every read so far was within bounds.
  [[nodiscard]] bool Good() const { return good_; }

 private:
  uint32_t Read(size_t count) {
    if (position_ > bytes_.size() || bytes_.size() - position_ < count) {
      good_ = false;
      return 0;
    }
    uint32_t value = 0;
    for (const uint8_t byte : bytes_.subspan(position_, count)) value = value << 8 | byte;
    position_ += count;
    return value;
  }

  std::span<const uint8_t> bytes_;
  size_t position_;
  bool good_ = true;
};

// All offsets in a collection, table offsets included, are from its start.
std::optional<size_t> FindNameTable(std::span<const uint8_t> collection, size_t member) {
  Reader reader(collection, member);
  reader.Skip(4);  // version
  const uint16_t tables = reader.Read16();
  reader.Skip(6);  // binary search fields
  for (uint16_t i = 0; i < tables && reader.Good(); ++i) {
    const uint32_t tag = reader.Read32();
    reader.Skip(4);  // checksum
    const uint32_t offset = reader.Read32();
    reader.Skip(4);  // length
    if (tag == kNameTag && reader.Good()) return offset;
  }
  return std::nullopt;
}

bool HasFamilyName(std::span<const uint8_t> collection, size_t nameTable, std::u16string_view face) {
  Reader reader(collection, nameTable);
  reader.Skip(2);  // format
  const uint16_t count = reader.Read16();
  const size_t strings = nameTable + reader.Read16();
  for (uint16_t i = 0; i < count && reader.Good(); ++i) {
    const uint16_t platform = reader.Read16();
    reader.Skip(4);  // encoding, language
    const uint16_t name = reader.Read16();
    const uint16_t length = reader.Read16();
    const size_t offset = strings + reader.Read16();
    if (name == kFamilyName && reader.Good() && offset <= collection.size() &&
        FaceNameMatches(collection.subspan(offset), platform, length, face)) {
      return true;
    }
  }
  return false;
}

}  // namespace

std::optional<int32_t> FindCollectionMember(std::span<const uint8_t> collection, std::u16string_view face) {
  Reader reader(collection, 0);
  if (reader.Read32() != kCollectionTag) return std::nullopt;
  reader.Skip(4);  // version
  const auto members = static_cast<int32_t>(reader.Read32());
  for (int32_t i = 0; i < members; ++i) {
    const uint32_t member = reader.Read32();
    if (!reader.Good()) break;
    const auto nameTable = FindNameTable(collection, member);
    if (nameTable && HasFamilyName(collection, *nameTable, face)) return i;
  }
  return std::nullopt;
}

bool FaceNameMatches(std::span<const uint8_t> bytes, uint32_t platformId, int32_t byteLength,
                     std::u16string_view face) {
  const auto length = static_cast<int32_t>(face.size());
  if (platformId != kUnicodePlatform && platformId != kMicrosoftPlatform) {
    if (byteLength != length || bytes.size() < face.size()) return false;
    for (size_t i = 0; i < face.size(); ++i) {
      if (bytes[i] != static_cast<uint8_t>(face[i])) return false;
    }
    return true;
  }
  if (byteLength / 2 != length) return false;
  // A string of odd length takes in the byte after it; that last pair must then be the zero that terminates
  // the face name.
  Reader reader(bytes, 0);
  for (int32_t i = 0; i < byteLength; i += 2) {
    const auto index = static_cast<size_t>(i / 2);
    const char16_t expected = index < face.size() ? face[index] : u'\0';
    if (reader.Read16() != expected || !reader.Good()) return false;
  }
  return true;
}

}  // namespace hdi
