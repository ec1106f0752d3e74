// The "name", "post" and "OS/2" tables of a subset.
#include "platform/linux/descriptive_tables.h"

#include <hb-ot.h>

#include <algorithm>
#include <array>
#include <string>

namespace hdi {
namespace {

// Family, style, full and PostScript name, then the names that readers prefer to family and style, which are
// not limited to four faces a family.
constexpr std::array<hb_ot_name_id_t, 8> kNames = {1, 2, 4, 6, 16, 17, 21, 22};

struct Name {
  hb_ot_name_id_t id;
  std::u16string text;
};

std::u16string ReadName(hb_face_t* face, hb_ot_name_id_t id, hb_language_t language) {
  constexpr size_t kLongest = 256;
  std::array<uint16_t, kLongest> text{};
  unsigned int size = kLongest;
  hb_ot_name_get_utf16(face, id, language, &size, text.data());
  return {text.begin(), text.begin() + size};
}

std::vector<Name> ReadNames(hb_face_t* face) {
  unsigned int count = 0;
  const hb_ot_name_entry_t* const entries = hb_ot_name_list_names(face, &count);
  const std::span all(entries, count);
  std::vector<Name> names;
  for (const hb_ot_name_id_t id : kNames) {
    std::u16string text = ReadName(face, id, hb_language_from_string("en", -1));
    const auto any = std::ranges::find(all, id, &hb_ot_name_entry_t::name_id);
    if (text.empty() && any != all.end()) text = ReadName(face, id, any->language);
    if (!text.empty()) names.push_back({id, std::move(text)});
  }
  return names;
}

}  // namespace

SfntTable WriteNames(hb_face_t* face) {
  constexpr size_t kMicrosoftPlatform = 3;
  constexpr size_t kUnicodeEncoding = 1;
  constexpr size_t kEnglish = 0x409;
  const std::vector<Name> names = ReadNames(face);
  SfntTable table;
  AppendU16(table, 0);
  AppendU16(table, names.size());
  AppendU16(table, 6 + 12 * names.size());
  SfntTable texts;
  for (const Name& name : names) {
    for (const size_t value : {kMicrosoftPlatform, kUnicodeEncoding, kEnglish, size_t{name.id},
                               2 * name.text.size(), texts.size()}) {
      AppendU16(table, value);
    }
    for (const char16_t unit : name.text) AppendU16(texts, unit);
  }
  table.insert(table.end(), texts.begin(), texts.end());
  return table;
}

SfntTable WritePostScriptTable(hb_face_t* face) {
  constexpr size_t kVersion = 4;
  constexpr size_t kUpToFixedPitch = 16;
  constexpr size_t kSize = 32;
  SfntTable table{0, 3, 0, 0};
  const SfntTable source = CopyTable(face, HB_TAG('p', 'o', 's', 't'));
  if (source.size() >= kUpToFixedPitch) {
    table.insert(table.end(), source.begin() + kVersion, source.begin() + kUpToFixedPitch);
  }
  table.resize(kSize);
  return table;
}

SfntTable WriteWindowsMetrics(hb_face_t* face, uint16_t firstCode, uint16_t lastCode) {
  constexpr size_t kFirstCode = 64;
  constexpr size_t kLastCode = 66;
  constexpr std::array<size_t, 6> kSizeByVersion = {78, 86, 96, 96, 96, 100};
  SfntTable table = CopyTable(face, HB_TAG('O', 'S', '/', '2'));
  if (table.size() < kSizeByVersion[0]) return {};
  const size_t version = std::min<size_t>(ReadU16(table, 0), kSizeByVersion.size() - 1);
  if (table.size() < kSizeByVersion[version]) return {};
  WriteU16(table, kFirstCode, firstCode);
  WriteU16(table, kLastCode, lastCode);
  return table;
}

}  // namespace hdi
