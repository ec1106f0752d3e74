// Reads the "cmap", "head", "name" and "OS/2" tables.
#include "platform/windows/font_face_facts.h"

#include <algorithm>
#include <cstdlib>
#include <span>

#include "platform/character_maps.h"
#include "platform/face_name.h"
#include "platform/font_names.h"
#include "platform/sfnt_bytes.h"

namespace hdi {
namespace {

constexpr uint16_t kFamilyName = 1;
constexpr uint16_t kStyleName = 2;
constexpr uint16_t kFullName = 4;

struct Style {
  int32_t weight;
  bool isItalic;
  int32_t width;
};

constexpr int32_t kOrdinaryWidth = 5;  // of usWidthClass, 1 to 9

Style ReadStyle(std::span<const uint8_t> head, std::span<const uint8_t> os2) {
  constexpr size_t kMacStyle = 44;
  constexpr size_t kWeightClass = 4;
  constexpr size_t kWidthClass = 6;
  constexpr size_t kSelection = 62;
  constexpr uint16_t kAbsent = 0xFFFF;  // a version that marks the table as missing
  const bool isThere = os2.size() >= kSelection + 2 && ReadU16(os2, 0) != kAbsent;
  if (!isThere) {
    const uint16_t style = ReadU16(head, kMacStyle);
    return {(style & 1) != 0 ? FW_BOLD : FW_REGULAR, (style & 2) != 0, kOrdinaryWidth};
  }
  constexpr uint16_t kItalicOrOblique = 1 | 1 << 9;
  const int32_t weight = std::max<int32_t>(ReadU16(os2, kWeightClass), 1);  // 0 would request any weight
  return {weight, (ReadU16(os2, kSelection) & kItalicOrOblique) != 0, ReadU16(os2, kWidthClass)};
}

CharacterMaps ReadCharacterMaps(const SelectedFont& font) {
  constexpr DWORD kTag = TableTag("cmap");
  const std::vector<uint8_t> header = font.Table(kTag, 0, kCharacterMapHeaderSize);
  if (header.size() < kCharacterMapHeaderSize) return CharacterMaps::kNone;
  const size_t size = kCharacterMapHeaderSize + kEncodingRecordSize * ReadU16(header, 2);
  return FindCharacterMaps(font.Table(kTag, 0, static_cast<DWORD>(size)));
}

}  // namespace

FontNaming ReadNaming(const SelectedFont& font) {
  const std::vector<uint8_t> table = font.Table(TableTag("name"));
  FontNaming naming{FontNames(table, kFamilyName), FontNames(table, kFullName), {}};
  KeepFaceNames(naming.families);
  const std::vector<std::u16string> styles = FontNames(table, kStyleName);
  if (!styles.empty()) naming.style = styles.front();
  return naming;
}

std::optional<FontFacts> ReadFacts(const SelectedFont& font) {
  constexpr size_t kHeadSize = 54;
  constexpr size_t kUnitsPerEm = 18;
  const std::vector<uint8_t> head = font.Table(TableTag("head"));
  if (head.size() < kHeadSize || font.TableSize(TableTag("glyf")) == 0 ||
      font.TableSize(TableTag("fvar")) != 0) {
    return std::nullopt;
  }
  const CharacterMaps maps = ReadCharacterMaps(font);
  if (maps == CharacterMaps::kNone) return std::nullopt;
  const Style style = ReadStyle(head, font.Table(TableTag("OS/2")));
  FontFacts facts{
      ReadNaming(font), static_cast<double>(ReadU16(head, kUnitsPerEm)), style.weight,
      style.isItalic,   std::abs(style.width - kOrdinaryWidth),          maps == CharacterMaps::kSymbol};
  if (facts.unitsPerEm == 0 || facts.names.families.empty()) return std::nullopt;
  return facts;
}

}  // namespace hdi
