// Which installed font, or which stroke font, stands for a font file that a drawing names.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace hdiplot {

struct MappedFont {
  std::string name;  // a family, or for a stroke font its Hershey font
  bool isStroke = false;
  bool bold = false;
  bool italic = false;
  bool monospaced = false;  // of a stroke font: every advance the same
  bool operator==(const MappedFont&) const = default;
};

// A table of usual fonts, and what a user adds to it. Names are compared without regard to case and without
// their directories.
class FontMap {
 public:
  // Adds the lines of `file`: NAME = FAMILY[, bold][, italic] or NAME = stroke:FONT, '#' for comments. They
  // go before the table, and a later line before an earlier one. A NAME without an extension stands for the
  // font file with any, and for a family of that name. Throws FileError, and keeps nothing of the file then.
  void Read(const std::filesystem::path& file);

  // What a font file of a style stands for; none when the table does not know it.
  [[nodiscard]] std::optional<MappedFont> OfFile(std::string_view fontFile) const;

  // What the user wants for a family; none when there is no word about it.
  [[nodiscard]] std::optional<MappedFont> OfFamily(std::string_view family) const;

 private:
  using Entries = std::map<std::string, MappedFont, std::less<>>;  // by name in lower case

  Entries own_;
};

// Whether the name is that of a TrueType or similar file, by its extension.
[[nodiscard]] bool IsOutlineFontFile(std::string_view fontFile);

// The name of a file without directories, whichever way these are separated.
[[nodiscard]] std::string_view FontFileName(std::string_view fontFile);

// The same without its extension, too.
[[nodiscard]] std::string_view FontFileStem(std::string_view fontFile);

// Families that stand in for one that is not installed, the most alike first.
[[nodiscard]] std::span<const std::string_view> StandInFamilies(std::string_view family);

}  // namespace hdiplot
