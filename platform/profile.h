// The text of a settings file: sections in brackets and `key=value` lines, read, edited and written back with
// every untouched line byte for byte as it was.
//
// A file is UTF-8 with or without a byte order mark, or UTF-16LE with one; its lines end in LF or CRLF. A
// line whose first character is a semicolon is a comment. A section begins with "[" and ends at the line's
// last "]". An entry's key is what stands before the first "=", its value what stands behind, both without
// the blanks around them; one pair of single or double quotes around a value is dropped. Of sections of one
// name the first counts, and of keys of one name the first in it; names are compared without regard to case.
//
// This is not left to a library: the common ones take ":" for "=", "#" and inner ";" for comments, and
// indented lines for continuations, and none writes a file back as it was.
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
  enum class LineKind : uint8_t { kBlank, kSection, kEntry, kMalformed };  // a comment is blank

  struct Line {
    LineKind kind = LineKind::kBlank;
    std::u16string name;  // of the section, or the entry's key
    std::u16string value;
    std::string text;  // as in the file, without the line's end
    std::string end;   // as in the file, empty when the file ends here
  };

  // Replaces the content by that of `path`, or by nothing when it can't be read.
  LoadResult Load(const std::u16string& path);

  // Replaces `path` by the content, as ReplaceWholeFile does.
  [[nodiscard]] bool Save(const std::u16string& path) const;

  [[nodiscard]] const std::vector<Line>& Lines() const { return lines_; }

  // The value of `key` in `section`; nothing when there is none.
  [[nodiscard]] std::optional<std::u16string> Find(std::u16string_view section,
                                                   std::u16string_view key) const;

  // Makes Find give `value`. Returns false, with nothing changed, when the form can't hold one of the three,
  // as a text with a line break in it.
  bool Set(std::u16string_view section, std::u16string_view key, std::u16string_view value);

  // Removes the section's head and everything up to its last entry. Returns whether there was one.
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
