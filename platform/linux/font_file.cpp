// Reads font files by offset.
#include "platform/linux/font_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace hdi {
namespace {

constexpr int kClosed = -1;
constexpr uint32_t kCollection = FontTag("ttcf");

}  // namespace

const FontTable* FontMember::Find(uint32_t tag) const {
  const auto found =
      std::find_if(tables.begin(), tables.end(), [tag](const FontTable& t) { return t.tag == tag; });
  return found == tables.end() ? nullptr : &*found;
}

FontFile::FontFile(const std::string& path) : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
  struct stat status = {};
  if (descriptor_ != kClosed && fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode)) {
    size_ = static_cast<uint64_t>(status.st_size);
  }
}

FontFile::~FontFile() {
  if (descriptor_ != kClosed) close(descriptor_);
}

bool FontFile::Read(uint64_t offset, std::span<uint8_t> bytes) const {
  if (offset > size_ || bytes.size() > size_ - offset) return false;
  while (!bytes.empty()) {
    const ssize_t count = pread(descriptor_, bytes.data(), bytes.size(), static_cast<off_t>(offset));
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    offset += static_cast<uint64_t>(count);
    bytes = bytes.subspan(static_cast<size_t>(count));
  }
  return true;
}

std::vector<uint8_t> FontFile::Read(uint64_t offset, uint64_t length) const {
  if (offset > size_ || length > size_ - offset) return {};
  std::vector<uint8_t> bytes(length);
  if (!Read(offset, std::span(bytes))) bytes.clear();
  return bytes;
}

std::vector<uint8_t> FontFile::Read(const FontTable& table) const { return Read(table.offset, table.length); }

bool FontFile::IsCollection() const {
  std::array<uint8_t, 4> tag = {};
  return Read(0, std::span(tag)) && ReadU32(tag, 0) == kCollection;
}

std::vector<uint32_t> FontFile::MemberOffsets() const {
  if (!IsCollection()) return size_ == 0 ? std::vector<uint32_t>() : std::vector<uint32_t>{0};
  std::array<uint8_t, 12> header = {};
  if (!Read(0, std::span(header))) return {};
  const std::vector<uint8_t> bytes = Read(header.size(), uint64_t{4} * ReadU32(header, 8));
  std::vector<uint32_t> offsets;
  for (size_t i = 0; i < bytes.size(); i += 4) offsets.push_back(ReadU32(bytes, i));
  return offsets;
}

FontMember FontFile::Member(uint32_t offset) const {
  constexpr size_t kRecordSize = 16;
  FontMember member;
  std::array<uint8_t, 12> header = {};
  if (!Read(offset, std::span(header))) return member;
  member.version = ReadU32(header, 0);
  const std::vector<uint8_t> records =
      Read(offset + header.size(), uint64_t{kRecordSize} * ReadU16(header, 4));
  for (size_t i = 0; i < records.size(); i += kRecordSize) {
    const FontTable table{ReadU32(records, i), ReadU32(records, i + 8), ReadU32(records, i + 12)};
    if (table.offset <= size_ && table.length <= size_ - table.offset) member.tables.push_back(table);
  }
  return member;
}

}  // namespace hdi
