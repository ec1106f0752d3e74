// What may become a face: each font that fontconfig lists, once its file has been looked at.
#pragma once

#include <fontconfig/fontconfig.h>

#include <cstdint>
#include <string>
#include <vector>

namespace hdi {

struct FontCandidate {
  FcPattern* pattern;  // the configuration's
  bool isInCollection;
  bool isSymbol;  // has a Microsoft symbol map and no other
  uint64_t fileSize;
  // Of the table "name". Among the families are only those by which a search through the file's members ends
  // at this one, and in a collection only those that fit a LOGFONTW.
  std::vector<std::u16string> families;
  std::vector<std::u16string> fullNames;
  std::vector<std::u16string> styles;
};

// The fonts of the configuration with TrueType outlines and a character map, in a fixed order: an ordinary
// width goes before a narrow one, a newer version before an older one. Broken files are left out.
[[nodiscard]] std::vector<FontCandidate> ListFontCandidates(FcConfig* config);

}  // namespace hdi
