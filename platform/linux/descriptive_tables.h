// Writes the descriptive tables of an embedded font, reduced to what readers need.
#pragma once

#include "platform/linux/harfbuzz.h"

namespace hdi {

// Returns a "name" table with the face's main names, each in one language: English if the face has it.
[[nodiscard]] SfntTable WriteNames(hb_face_t* face);

// Returns a "post" table without glyph names.
[[nodiscard]] SfntTable WritePostScriptTable(hb_face_t* face);

// Returns the face's "OS/2" table with codes from `firstCode` to `lastCode`; empty if it has none.
[[nodiscard]] SfntTable WriteWindowsMetrics(hb_face_t* face, uint16_t firstCode, uint16_t lastCode);

}  // namespace hdi
