// Fonts for tests: installed ones by path, and small collections made byte by byte.
#pragma once

#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace font_files {

// Empty when the file is not there.
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

// A collection of members that have a table "abcd" without content and a table of names.
inline std::string Collection(const std::vector<std::vector<Name>>& members) {
  std::string offsets;
  std::string bodies;
  const size_t start = 12 + 4 * members.size();
  for (const auto& names : members) {
    offsets += BigEndian(start + bodies.size(), 4);
    const size_t table = start + bodies.size() + 12 + size_t{2} * 16;
    bodies += BigEndian(0x00010000, 4) + BigEndian(2, 2) + BigEndian(0, 6);
    bodies +=
        "abcd" + std::string(12, '\0') + "name" + BigEndian(0, 4) + BigEndian(table, 4) + BigEndian(0, 4);
    bodies += BigEndian(0, 2) + BigEndian(names.size(), 2) + BigEndian(6 + 12 * names.size(), 2);
    std::string strings;
    for (const Name& name : names) {
      bodies += BigEndian(name.platform, 2) + BigEndian(0, 4) + BigEndian(name.id, 2) +
                BigEndian(name.bytes.size(), 2) + BigEndian(strings.size(), 2);
      strings += name.bytes;
    }
    bodies += strings;
  }
  return "ttcf" + BigEndian(0x00010000, 4) + BigEndian(members.size(), 4) + offsets + bodies;
}

}  // namespace font_files
