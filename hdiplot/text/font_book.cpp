#include "hdiplot/text/font_book.h"

#include <algorithm>

#include "hdiplot/system/ascii_case.h"
#include "hdiplot/system/font_files.h"
#include "hdiplot/system/names.h"
#include "hdiplot/text/font_table.h"
#include "platform/font_services.h"
#include "platform/unicode.h"

namespace hdiplot {

namespace {

constexpr const char* kUsualStrokes = "rowmans";
constexpr const char* kUsualFamily = "Arial";

constexpr int32_t kBold = 700;
constexpr int32_t kRegular = 400;
constexpr uint8_t kDefaultCharacterSet = 1;

hdi::LOGFONTW LogFont(const std::string& family, bool bold, bool italic) {
  hdi::LOGFONTW font{};
  font.lfWeight = bold ? kBold : kRegular;
  font.lfItalic = italic ? 1 : 0;
  font.lfCharSet = kDefaultCharacterSet;
  const std::u16string name = hdi::ToUtf16(family);
  name.copy(font.lfFaceName, std::size(font.lfFaceName) - 1);
  return font;
}

// Removes `word` and the blank before it from the end of the name.
bool TakeLastWord(std::string& name, std::string_view word) {
  if (name.size() <= word.size() + 1 || name[name.size() - word.size() - 1] != ' ') return false;
  if (!EqualWithoutCase(std::string_view(name).substr(name.size() - word.size()), word)) return false;
  name.resize(name.size() - word.size() - 1);
  return true;
}

// A font by its full name, "DejaVu Sans Bold Oblique".
MappedFont WithStyleApart(const std::string& fullName) {
  MappedFont font{fullName};
  TakeLastWord(font.name, "Regular");
  font.italic = TakeLastWord(font.name, "Italic") || TakeLastWord(font.name, "Oblique");
  font.bold = TakeLastWord(font.name, "Bold");
  return font;
}

// The font in an installed file of that name; none when no font in it can be selected.
std::optional<MappedFont> InstalledFont(std::string_view fontFile) {
  const std::string fullName = FontInFile(FontFileName(fontFile));
  if (fullName.empty()) return std::nullopt;
  const MappedFont apart = WithStyleApart(fullName);
  // Some family names end in "Bold".
  for (const MappedFont& font : {apart, MappedFont{fullName}}) {
    if (hdi::HasFamily(hdi::ToUtf16(font.name))) return font;
  }
  return std::nullopt;
}

// The font that draws the characters of a missing Hershey font.
std::string StandInForStrokes(const OutlineFont* bigFont) {
  if (bigFont == nullptr || StrokeFont::Exists(kUsualStrokes)) return kUsualStrokes;
  return hdi::ToUtf8(bigFont->Face().Family());
}

// The family without the prefix that selects glyphs rotated for vertical text.
std::string_view WithoutAt(std::string_view family) {
  return family.starts_with('@') ? family.substr(1) : family;
}

}  // namespace

FontBook::FontBook(FontMap map, Report report) : map_(std::move(map)), report_(std::move(report)) {}

const TextFont& FontBook::FontFor(const FontChoice& choice) {
  const PlotFont font = Find(choice);
  if (font.stroke != nullptr) return *font.stroke;
  return *font.outline;
}

PlotFont FontBook::Find(const FontChoice& choice) {
  if (last_ >= found_.size() || found_[last_].first != choice) {
    const auto found = std::ranges::find(found_, choice, &std::pair<FontChoice, PlotFont>::first);
    last_ = static_cast<size_t>(found - found_.begin());
    if (found == found_.end()) found_.emplace_back(choice, LookUp(choice));
  }
  return found_[last_].second;
}

const OutlineFont* FontBook::InterfaceFont() {
  if (interface_ == nullptr) {
    const auto font = hdi::SystemFontServices().DefaultInterfaceFont();
    const hdi::FontFace* face = font ? hdi::FindFace(*font) : nullptr;
    if (face != nullptr) interface_ = std::make_unique<OutlineFont>(*face, *font);
  }
  return interface_.get();
}

PlotFont FontBook::LookUp(const FontChoice& choice) {
  const MappedFont font = Mapped(choice);
  if (!font.isStroke) {
    if (const OutlineFont* outline = Outline(font)) return {nullptr, outline};
    ReportMissing(font.name, kUsualStrokes);
    return {&Strokes({kUsualStrokes, true}, {}), nullptr};
  }
  return {&Strokes(font, choice.bigFontFile), nullptr};
}

MappedFont FontBook::Mapped(const FontChoice& choice) {
  MappedFont font;
  if (!choice.family.empty()) {
    const std::string_view family = WithoutAt(choice.family);
    font = map_.OfFamily(family).value_or(MappedFont{std::string(family)});
  } else if (auto mapped = map_.OfFile(choice.fontFile)) {
    font = *mapped;
  } else if (IsOutlineFontFile(choice.fontFile)) {
    font = InstalledFont(choice.fontFile).value_or(MappedFont{std::string(FontFileStem(choice.fontFile))});
  } else {
    font = {kUsualStrokes, true};
    if (!choice.fontFile.empty()) ReportMissing(choice.fontFile, kUsualStrokes);
  }
  font.bold = font.bold || choice.bold;
  font.italic = font.italic || choice.italic;
  return font;
}

const OutlineFont* FontBook::Outline(const MappedFont& font) {
  const auto [entry, isNew] = outlines_.try_emplace({FoldedName(font.name), font.bold, font.italic});
  if (!isNew) return entry->second.get();
  const std::string family = InstalledFamily(font.name);
  const hdi::LOGFONTW wanted = LogFont(family.empty() ? font.name : family, font.bold, font.italic);
  const hdi::FontFace* face = hdi::FindFace(wanted);
  if (face == nullptr) return nullptr;
  if (family != font.name) ReportMissing(font.name, hdi::ToUtf8(face->Family()));
  entry->second = std::make_unique<OutlineFont>(*face, wanted);
  return entry->second.get();
}

// The family itself or its first installed substitute; empty when there is none.
std::string FontBook::InstalledFamily(const std::string& family) const {
  if (hdi::HasFamily(hdi::ToUtf16(family))) return family;
  for (const std::string_view standIn : StandInFamilies(family)) {
    if (hdi::HasFamily(hdi::ToUtf16(standIn))) return std::string(standIn);
  }
  return {};
}

const StrokeFont& FontBook::Strokes(const MappedFont& font, const std::string& bigFontFile) {
  MappedFont big;
  if (!bigFontFile.empty()) big = map_.OfFile(bigFontFile).value_or(big);
  if (big.isStroke || big.name.empty()) big = {kUsualFamily};
  // Not reported: no drawing named this family.
  const std::string family = InstalledFamily(big.name);
  if (!family.empty()) big.name = family;
  const OutlineFont* bigFont = Outline(big);
  auto& strokes = strokes_[{font.name, font.monospaced, bigFont}];
  if (strokes == nullptr) {
    if (!StrokeFont::Exists(font.name)) ReportMissing(font.name, StandInForStrokes(bigFont));
    strokes = std::make_unique<StrokeFont>(font.name, font.monospaced, bigFont);
  }
  return *strokes;
}

void FontBook::ReportMissing(const std::string& name, const std::string& standIn) {
  if (!report_ || !reported_.insert(FoldedName(name)).second) return;
  report_(name, standIn);
}

}  // namespace hdiplot
