// The font subsetter on Linux. HarfBuzz reduces the outlines to the needed glyphs and renumbers them. The
// other tables are written here: a PDF reader needs little of them and looks glyphs up by number.
#include "platform/font_subsetter.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>
#include <vector>

#include "platform/linux/character_map.h"
#include "platform/linux/descriptive_tables.h"
#include "platform/linux/glyph_copies.h"
#include "platform/linux/harfbuzz.h"

namespace hdi {
namespace {

constexpr uint32_t kDone = 0;
constexpr uint32_t kFailed = 1;

// A table's tag and its member in GlyphTables.
struct GlyphTable {
  hb_tag_t tag;
  SfntTable GlyphTables::*table;
};

constexpr std::array kGlyphTables = {
    GlyphTable{HB_TAG('h', 'e', 'a', 'd'), &GlyphTables::head},
    GlyphTable{HB_TAG('h', 'h', 'e', 'a'), &GlyphTables::hhea},
    GlyphTable{HB_TAG('m', 'a', 'x', 'p'), &GlyphTables::maxp},
    GlyphTable{HB_TAG('h', 'm', 't', 'x'), &GlyphTables::hmtx},
    GlyphTable{HB_TAG('l', 'o', 'c', 'a'), &GlyphTables::loca},
    GlyphTable{HB_TAG('g', 'l', 'y', 'f'), &GlyphTables::glyf},
};

// Null if there is no such face or it has no TrueType outlines. The face refers to the bytes.
HarfBuzzFace OpenFace(std::span<const uint8_t> source, bool isCollection, uint16_t index) {
  constexpr size_t kHeaderSize = 12;
  if (source.size() < kHeaderSize) return nullptr;
  const uint32_t kind = ReadU32(source, 0);
  const bool isFont = kind == 0x00010000 || kind == HB_TAG('t', 'r', 'u', 'e');
  if (isCollection ? kind != HB_TAG('t', 't', 'c', 'f') : !isFont) return nullptr;
  const HarfBuzzBlob blob = MakeBlob(source);
  if (isCollection && index >= hb_face_count(blob.get())) return nullptr;
  return HarfBuzzFace(hb_face_create(blob.get(), isCollection ? index : 0));
}

// Returns a face with only the glyph tables, so that HarfBuzz does not process the others. Null if one of
// them is missing or the units per em are out of range.
HarfBuzzFace WithGlyphTablesOnly(hb_face_t* face) {
  HarfBuzzFace glyphFace(hb_face_builder_create());
  for (const GlyphTable& each : kGlyphTables) {
    const HarfBuzzBlob table(hb_face_reference_table(face, each.tag));
    if (BlobBytes(table).empty()) return nullptr;
    hb_face_builder_add_table(glyphFace.get(), each.tag, table.get());
  }
  constexpr size_t kUnitsPerEm = 18;
  const SfntTable head = CopyTable(face, HB_TAG('h', 'e', 'a', 'd'));
  if (head.size() < kUnitsPerEm + 2) return nullptr;
  const uint16_t unitsPerEm = ReadU16(head, kUnitsPerEm);
  if (unitsPerEm < 16 || unitsPerEm > 16384) return nullptr;
  return glyphFace;
}

// Reduces the face to the characters' glyphs and their components and renumbers the characters' glyphs.
// Characters whose glyphs do not exist are removed. Null if HarfBuzz fails.
HarfBuzzFace SubsetGlyphs(hb_face_t* face, std::vector<MappedCharacter>& characters) {
  const HarfBuzzInput input(hb_subset_input_create_or_fail());
  if (!input) return nullptr;
  hb_subset_input_set_flags(input.get(), HB_SUBSET_FLAGS_NO_HINTING | HB_SUBSET_FLAGS_NOTDEF_OUTLINE);
  hb_set_t* const glyphs = hb_subset_input_glyph_set(input.get());
  for (const MappedCharacter& character : characters) hb_set_add(glyphs, character.glyph);

  const HarfBuzzPlan plan(hb_subset_plan_create_or_fail(face, input.get()));
  if (!plan) return nullptr;
  HarfBuzzFace subset(hb_subset_plan_execute_or_fail(plan.get()));
  const hb_map_t* const newGlyphs = hb_subset_plan_old_to_new_glyph_mapping(plan.get());
  std::erase_if(characters, [&](MappedCharacter& character) {
    const hb_codepoint_t glyph = hb_map_get(newGlyphs, character.glyph);
    character.glyph = static_cast<uint16_t>(glyph);
    return glyph == HB_MAP_VALUE_INVALID;
  });
  return subset;
}

// Gives each character a glyph number of its own; characters that share a glyph get numbers from `glyphCount`
// on. Returns the glyphs to copy there.
std::vector<uint16_t> MakeGlyphsDistinct(std::vector<MappedCharacter>& characters, size_t glyphCount) {
  std::vector<bool> isTaken(glyphCount);
  std::vector<uint16_t> originals;
  for (MappedCharacter& character : characters) {
    if (isTaken[character.glyph]) {
      originals.push_back(character.glyph);
      character.glyph = static_cast<uint16_t>(glyphCount + originals.size() - 1);
    } else {
      isTaken[character.glyph] = true;
    }
  }
  return originals;
}

// Makes a font of the tables, leaving out empty ones.
HarfBuzzBlob Assemble(std::span<const std::pair<hb_tag_t, SfntTable>> tables) {
  const HarfBuzzFace font(hb_face_builder_create());
  for (const auto& [tag, table] : tables) {
    if (!table.empty()) hb_face_builder_add_table(font.get(), tag, MakeBlob(table).get());
  }
  return HarfBuzzBlob(hb_face_reference_blob(font.get()));
}

// Null if no subset can be made.
HarfBuzzBlob MakeSubset(hb_face_t* face, std::span<const uint16_t> codes) {
  const HarfBuzzFace glyphFace = WithGlyphTablesOnly(face);
  std::optional<std::vector<MappedCharacter>> characters = LookUpCharacters(face, codes);
  if (!glyphFace || !characters) return nullptr;
  const HarfBuzzFace subset = SubsetGlyphs(glyphFace.get(), *characters);
  if (!subset) return nullptr;

  GlyphTables glyphs;
  for (const GlyphTable& each : kGlyphTables) glyphs.*each.table = CopyTable(subset.get(), each.tag);
  if (!AppendGlyphCopies(glyphs, MakeGlyphsDistinct(*characters, hb_face_get_glyph_count(subset.get())))) {
    return nullptr;
  }
  SfntTable map = WriteCharacterMap(*characters);
  if (map.empty()) return nullptr;

  const uint16_t firstCode = characters->empty() ? 0 : characters->front().code;
  const uint16_t lastCode = characters->empty() ? 0 : characters->back().code;
  std::vector<std::pair<hb_tag_t, SfntTable>> tables{
      {HB_TAG('c', 'm', 'a', 'p'), std::move(map)},
      {HB_TAG('n', 'a', 'm', 'e'), WriteNames(face)},
      {HB_TAG('p', 'o', 's', 't'), WritePostScriptTable(face)},
      {HB_TAG('O', 'S', '/', '2'), WriteWindowsMetrics(face, firstCode, lastCode)}};
  for (const GlyphTable& each : kGlyphTables) tables.emplace_back(each.tag, std::move(glyphs.*each.table));
  return Assemble(tables);
}

uint32_t CreateFontPackage(const uint8_t* source, uint32_t sourceSize, uint8_t** package,
                           uint32_t* packageSize, uint32_t* written, uint16_t flags, uint16_t collectionIndex,
                           uint16_t format, uint16_t /*language*/, uint16_t platform, uint16_t encoding,
                           const uint16_t* keepList, uint16_t keepCount, AllocateFunction allocate,
                           ReallocateFunction /*reallocate*/, FreeFunction /*free*/, void* /*reserved*/) {
  const bool isCollection = (flags & kSubsetFlagCollection) != 0;
  if ((flags & ~kSubsetFlagCollection) != kSubsetFlagSubset || format != kSubsetPlainFormat ||
      platform != kSubsetMicrosoftPlatform || encoding != kSubsetAnyEncoding) {
    return kFailed;
  }
  // Without characters there is nothing to subset.
  if (source == nullptr || keepList == nullptr || keepCount == 0) return kFailed;
  const HarfBuzzFace face = OpenFace({source, sourceSize}, isCollection, collectionIndex);
  if (!face) return kFailed;
  const HarfBuzzBlob font = MakeSubset(face.get(), {keepList, keepCount});
  if (!font || BlobBytes(font).empty()) return kFailed;

  const std::span<const uint8_t> bytes = BlobBytes(font);
  auto* const block = static_cast<uint8_t*>(allocate(bytes.size()));
  if (block == nullptr) return kFailed;
  std::ranges::copy(bytes, block);
  *package = block;
  *packageSize = *written = static_cast<uint32_t>(bytes.size());
  return kDone;
}

}  // namespace

CreateFontPackageFunction* FindCreateFontPackage() { return CreateFontPackage; }

}  // namespace hdi
