// A settings file with sections in brackets and `key=value` lines. Editing it keeps every untouched line byte
// for byte.
//
// A file is UTF-8 with or without a byte order mark, or UTF-16LE with one; lines end in LF or CRLF. Lines
// whose first character is a semicolon are comments. A section name extends from "[" to the line's last "]".
// A key is what precedes the first "=", its value what follows; both are trimmed, and one pair of single or
// double quotes around a value is dropped. The first section of a name counts, and in it the first entry of a
// key; names are compared ignoring case.
//
// No common library fits: they take ":" for "=", "#" and inner ";" for comments and indented lines for
// continuations, and none writes a file back unchanged.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/whole_file.h"

namespace hdi {

class Profile {
 public:
  enum class LineKind : uint8_t { kBlank, kSection, kEntry, kMalformed };  // comments are blank

  struct Line {
    LineKind kind = LineKind::kBlank;
    std::u16string name;  // section name or entry key
    std::u16string value;
    std::string text;  // as in the file, without the line ending
    std::string end;   // as in the file; empty at the end of the file
  };

  // Replaces the content by that of `path`, or clears it if the file cannot be read.
  LoadResult Load(const std::u16string& path);

  // Writes the content to `path` with ReplaceWholeFile.
  [[nodiscard]] bool Save(const std::u16string& path) const;

  [[nodiscard]] const std::vector<Line>& Lines() const { return lines_; }

  // Returns the value of `key` in `section`, or nothing.
  [[nodiscard]] std::optional<std::u16string> Find(std::u16string_view section,
                                                   std::u16string_view key) const;

  // Sets the value that Find returns. Returns false, with nothing changed, if the format cannot represent one
  // of the three, such as a text with a line break.
  bool Set(std::u16string_view section, std::u16string_view key, std::u16string_view value);

  // Removes the section from its header to its last entry. Returns whether there was one.
  bool RemoveSection(std::u16string_view section);

 private:
  enum class Encoding : uint8_t { kUtf8, kUtf16 };

  void Parse(std::string_view bytes);
  [[nodiscard]] std::u16string Decode(std::string_view bytes) const;
  [[nodiscard]] std::string Encode(std::u16string_view text) const;
  [[nodiscard]] std::string LineEnd() const;
  [[nodiscard]] std::optional<size_t> FindSection(std::u16string_view section) const;
  [[nodiscard]] std::optional<size_t> FindEntry(size_t section, std::u16string_view key) const;
  [[nodiscard]] size_t LastOfSection(size_t section) const;
  void Insert(size_t position, Line line);

  Encoding encoding_ = Encoding::kUtf8;
  std::string mark_;
  std::vector<Line> lines_;
};

}  // namespace hdi
