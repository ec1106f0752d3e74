// A font file on disk with its OpenType structure: members, tables and names. All reads are checked against
// the file's size: fonts are untrusted, and a file may change while it is listed.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/sfnt_bytes.h"

namespace hdi {

// An OpenType tag as a big-endian number.
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

// The tables of one font in directory order. Tables outside the file are left out.
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

  // 0 if the file cannot be opened.
  [[nodiscard]] uint64_t Size() const { return size_; }
  // Fills `bytes`; false if the file does not have that many at `offset`.
  [[nodiscard]] bool Read(uint64_t offset, std::span<uint8_t> bytes) const;
  // Both return nothing if the file is too short or cannot be read.
  [[nodiscard]] std::vector<uint8_t> Read(uint64_t offset, uint64_t length) const;
  [[nodiscard]] std::vector<uint8_t> Read(const FontTable& table) const;

  [[nodiscard]] bool IsCollection() const;
  // Offsets of the members' table directories; a plain font has one at 0. Empty for anything else.
  [[nodiscard]] std::vector<uint32_t> MemberOffsets() const;
  // Without tables if the directory cannot be read.
  [[nodiscard]] FontMember Member(uint32_t offset) const;

 private:
  int descriptor_;
  uint64_t size_ = 0;
};

// Returns a member of a collection as a font file of its own. Empty if a table cannot be read.
[[nodiscard]] std::vector<uint8_t> PlainFont(const FontFile& file, const FontMember& member);

}  // namespace hdi
