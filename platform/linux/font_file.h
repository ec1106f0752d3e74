// A font file on disk and the layout that OpenType gives it: members, their tables, the names among these.
// Everything is read by offset and tested against the file's size: fonts are other people's data, and a file
// may change while it is listed.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/sfnt_bytes.h"

namespace hdi {

// A tag of OpenType as the file's big-endian number.
[[nodiscard]] constexpr uint32_t FontTag(const char (&letters)[5]) {
  uint32_t tag = 0;
  for (int i = 0; i < 4; ++i) tag = tag << 8 | static_cast<uint8_t>(letters[i]);
  return tag;
}

struct FontTable {
  uint32_t tag;
  uint32_t offset;  // from the start of the file
  uint32_t length;
};

// The tables of one font, in the order of its directory; those that don't lie within the file are left out.
struct FontMember {
  uint32_t version = 0;
  std::vector<FontTable> tables;

  [[nodiscard]] const FontTable* Find(uint32_t tag) const;
};

class FontFile {
 public:
  explicit FontFile(const std::string& path);
  FontFile(const FontFile&) = delete;
  FontFile& operator=(const FontFile&) = delete;
  ~FontFile();

  // 0 for a file that can't be opened.
  [[nodiscard]] uint64_t Size() const { return size_; }
  // Fills `bytes`; false when the file has not that many at `offset`.
  [[nodiscard]] bool Read(uint64_t offset, std::span<uint8_t> bytes) const;
  // Empty when the file is shorter or can't be read.
  [[nodiscard]] std::vector<uint8_t> Read(uint64_t offset, uint64_t length) const;
  [[nodiscard]] std::vector<uint8_t> Read(const FontTable& table) const;

  [[nodiscard]] bool IsCollection() const;
  // Where the members' directories lie: at 0 for a plain font. Empty for what is neither.
  [[nodiscard]] std::vector<uint32_t> MemberOffsets() const;
  // Without tables when the directory can't be read.
  [[nodiscard]] FontMember Member(uint32_t offset) const;

 private:
  int descriptor_;
  uint64_t size_ = 0;
};

// A plain font file made of one member of a collection. Empty when a table can't be read.
[[nodiscard]] std::vector<uint8_t> PlainFont(const FontFile& file, const FontMember& member);

}  // namespace hdi
