// Maps the font files that drawings name to installed fonts and stroke fonts.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace hdiplot {

struct MappedFont {
  std::string name;  // a family, or a Hershey font
  bool isStroke = false;
  bool bold = false;
  bool italic = false;
  bool monospaced = false;  // of a stroke font: all advances are equal
  bool operator==(const MappedFont&) const = default;
};

// A table of common fonts and the user's additions. Names are compared case-insensitively and without
// directories.
class FontMap {
 public:
  // Adds the lines of `file`: NAME = FAMILY[, bold][, italic] or NAME = stroke:FONT, '#' for comments. They
  // override the table, and later lines override earlier ones. A NAME without an extension matches the font
  // file with any extension, and a family of that name. Throws FileError and then adds nothing.
  void Read(const std::filesystem::path& file);

  // The font for a style's font file; none if unknown.
  [[nodiscard]] std::optional<MappedFont> OfFile(std::string_view fontFile) const;

  // The user's font for a family, if any.
  [[nodiscard]] std::optional<MappedFont> OfFamily(std::string_view family) const;

 private:
  using Entries = std::map<std::string, MappedFont, std::less<>>;  // by name in lower case

  Entries own_;
};

// Whether the file's extension is that of an outline font.
[[nodiscard]] bool IsOutlineFontFile(std::string_view fontFile);

// A file's name without directories, separated by either kind of slash.
[[nodiscard]] std::string_view FontFileName(std::string_view fontFile);

// The same without its extension, too.
[[nodiscard]] std::string_view FontFileStem(std::string_view fontFile);

}  // namespace hdiplot
