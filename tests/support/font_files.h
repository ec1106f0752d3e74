// Fonts for tests: installed files, and small collections built in memory.
#pragma once

#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace font_files {

// Empty if the file does not exist.
inline std::string Read(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline std::string ReadLiberationSerif() {
  std::string bytes = Read("/usr/share/fonts/truetype/liberation/LiberationSerif-Regular.ttf");
  return bytes.empty() ? Read("/usr/share/fonts/truetype/liberation2/LiberationSerif-Regular.ttf") : bytes;
}

inline std::string BigEndian(uint64_t value, int bytes) {
  std::string text;
  while (bytes-- > 0) text.push_back(static_cast<char>(value >> (8 * bytes)));
  return text;
}

inline std::string Utf16BigEndian(std::u16string_view text) {
  std::string bytes;
  for (const char16_t unit : text) bytes += BigEndian(unit, 2);
  return bytes;
}

struct Name {
  uint16_t platform;
  uint16_t id;
  std::string bytes;
};

// A font with an empty table "abcd" and a "name" table.
inline std::string NamedFont(const std::vector<Name>& names) {
  constexpr uint64_t kEnd = 12 + 2 * 16;
  std::string font = BigEndian(0x00010000, 4) + BigEndian(2, 2) + BigEndian(0, 6);
  font += "abcd" + BigEndian(0, 4) + BigEndian(kEnd, 4) + BigEndian(0, 4);
  font += "name" + BigEndian(0, 4) + BigEndian(kEnd, 4) + BigEndian(0, 4);
  font += BigEndian(0, 2) + BigEndian(names.size(), 2) + BigEndian(6 + 12 * names.size(), 2);
  std::string strings;
  for (const Name& name : names) {
    font += BigEndian(name.platform, 2) + BigEndian(0, 4) + BigEndian(name.id, 2) +
            BigEndian(name.bytes.size(), 2) + BigEndian(strings.size(), 2);
    strings += name.bytes;
  }
  return font + strings;
}

inline std::string Collection(const std::vector<std::string>& fonts) {
  std::string offsets;
  std::string bodies;
  for (std::string font : fonts) {
    const size_t start = 12 + 4 * fonts.size() + bodies.size();
    offsets += BigEndian(start, 4);
    // Table offsets are from the start of the collection.
    for (size_t at = 12 + 8; at < 12 + 16 * static_cast<size_t>(font[5]); at += 16) {
      uint64_t offset = start;
      for (size_t i = 0; i < 4; ++i)
        offset += static_cast<uint64_t>(static_cast<uint8_t>(font[at + i])) << (24 - 8 * i);
      font.replace(at, 4, BigEndian(offset, 4));
    }
    bodies += font;
  }
  return "ttcf" + BigEndian(0x00010000, 4) + BigEndian(fonts.size(), 4) + offsets + bodies;
}

}  // namespace font_files
