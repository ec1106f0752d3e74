// Candidate faces: the fonts that fontconfig lists, checked against their files.
#pragma once

#include <fontconfig/fontconfig.h>

#include <cstdint>
#include <string>
#include <vector>

namespace hdi {

struct FontCandidate {
  FcPattern* pattern;  // owned by the configuration
  bool isInCollection;
  bool isSymbol;  // has a Microsoft symbol map and no Unicode map
  uint64_t fileSize;
  // From the "name" table. `families` holds only names by which a search through the file's members finds
  // this one, and in a collection only those that fit a LOGFONTW.
  std::vector<std::u16string> families;
  std::vector<std::u16string> fullNames;
  std::vector<std::u16string> styles;
};

// Returns the configuration's fonts with TrueType outlines and a character map, in a fixed order: normal
// width before narrow, newer versions before older. Broken files are left out.
[[nodiscard]] std::vector<FontCandidate> ListFontCandidates(FcConfig* config);

}  // namespace hdi
