#include "hdiplot/text/font_map.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fstream>
#include <span>
#include <system_error>

#include "hdiplot/system/ascii_case.h"
#include "hdiplot/system/errors.h"
#include "hdiplot/system/names.h"
#include "hdiplot/system/split.h"
#include "hdiplot/text/font_table.h"
#include "hdiplot/text/stroke_font.h"

namespace hdiplot {

namespace {

constexpr std::string_view kStrokePrefix = "stroke:";

std::string_view ExtensionOf(std::string_view name) {
  constexpr size_t kLength = 4;
  if (name.size() <= kLength || name[name.size() - kLength] != '.') return {};
  return name.substr(name.size() - kLength);
}

// Some editors write one.
std::string_view WithoutByteOrderMark(std::string_view text) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  return text.starts_with(kByteOrderMark) ? text.substr(kByteOrderMark.size()) : text;
}

std::string_view TrimmedBlanks(std::string_view text) { return Trimmed<char>(text, " \t\r"); }

std::string_view TakeTrimmed(std::string_view& text, char separator) {
  return TrimmedBlanks(TakePart(text, separator));
}

template <typename Entry>
const Entry* FindStem(std::span<const Entry> table, std::string_view stem) {
  const auto found = std::ranges::find(table, stem, &Entry::stem);
  return found != table.end() ? &*found : nullptr;
}

// Parses the right side of a line. Throws std::invalid_argument with the reason.
MappedFont ParseFont(std::string_view text) {
  MappedFont font;
  std::string_view name = TakeTrimmed(text, ',');
  font.isStroke = LowerCase(name).starts_with(kStrokePrefix);
  if (font.isStroke) name = TrimmedBlanks(name.substr(kStrokePrefix.size()));
  font.name = font.isStroke ? LowerCase(name) : std::string(name);
  if (name.empty()) throw std::invalid_argument("there is no font behind the \"=\"");
  if (font.isStroke && !StrokeFont::Exists(font.name)) {
    throw std::invalid_argument("there is no stroke font \"" + font.name + "\"");
  }
  while (!text.empty()) {
    const std::string_view look = TakeTrimmed(text, ',');
    if (EqualWithoutCase(look, "bold") && !font.isStroke) {
      font.bold = true;
    } else if (EqualWithoutCase(look, "italic") && !font.isStroke) {
      font.italic = true;
    } else {
      throw std::invalid_argument("\"" + std::string(look) + "\" is neither bold nor italic of a family");
    }
  }
  return font;
}

}  // namespace

bool IsOutlineFontFile(std::string_view fontFile) {
  constexpr std::array<std::string_view, 5> kExtensions{".ttf", ".ttc", ".otf", ".pfb", ".fon"};
  return std::ranges::find(kExtensions, LowerCase(ExtensionOf(fontFile))) != kExtensions.end();
}

std::string_view FontFileName(std::string_view fontFile) {
  const size_t separator = fontFile.find_last_of("/\\");
  return separator == std::string_view::npos ? fontFile : fontFile.substr(separator + 1);
}

std::string_view FontFileStem(std::string_view fontFile) {
  const std::string_view name = FontFileName(fontFile);
  return name.substr(0, name.size() - ExtensionOf(name).size());
}

void FontMap::Read(const std::filesystem::path& file) {
  std::ifstream stream(file);
  if (!stream) throw FileError(file, 0, std::generic_category().message(errno));
  Entries entries = own_;
  std::string text;
  for (size_t number = 1; std::getline(stream, text); ++number) {
    std::string_view line = number == 1 ? WithoutByteOrderMark(text) : text;
    line = TrimmedBlanks(line.substr(0, line.find('#')));
    if (line.empty()) continue;
    try {
      if (line.find('=') == std::string_view::npos) throw std::invalid_argument("a line is NAME = FONT");
      const std::string_view name = TakeTrimmed(line, '=');
      if (name.empty()) throw std::invalid_argument("there is no name before the \"=\"");
      entries.insert_or_assign(FoldedName(FontFileName(name)), ParseFont(line));
    } catch (const std::invalid_argument& error) {
      throw FileError(file, number, error.what());
    }
  }
  if (stream.bad()) throw FileError(file, 0, "could not be read");
  own_ = std::move(entries);
}

std::optional<MappedFont> FontMap::OfFile(std::string_view fontFile) const {
  const std::string name = FoldedName(FontFileName(fontFile));
  const std::string stem(FontFileStem(name));
  for (const std::string& key : {name, stem}) {
    if (const auto found = own_.find(key); found != own_.end()) return found->second;
  }
  const bool isOutline = IsOutlineFontFile(name);
  const bool isEither = name == stem;
  if (const auto* entry = FindStem(StrokeFileTable(), stem); entry != nullptr && !isOutline) {
    return MappedFont{std::string(entry->font), !entry->isFamily, false, false, entry->monospaced};
  }
  if (const auto* entry = FindStem(OutlineFileTable(), stem); entry != nullptr && (isOutline || isEither)) {
    return MappedFont{std::string(entry->family), false, entry->bold, entry->italic, false};
  }
  return std::nullopt;
}

std::optional<MappedFont> FontMap::OfFamily(std::string_view family) const {
  const auto found = own_.find(FoldedName(family));
  return found != own_.end() ? std::optional(found->second) : std::nullopt;
}

}  // namespace hdiplot
