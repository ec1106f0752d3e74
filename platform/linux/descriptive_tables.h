// The tables of a font that describe it to its readers, cut down for a font that is embedded.
#pragma once

#include "platform/linux/harfbuzz.h"

namespace hdi {

// A table "name" with the names by which readers call the face, each in one language: English where the face
// has it.
[[nodiscard]] SfntTable WriteNames(hb_face_t* face);

// A table "post" without glyph names.
[[nodiscard]] SfntTable WritePostScriptTable(hb_face_t* face);

// The face's table "OS/2" for a font whose codes go from `firstCode` to `lastCode`; empty when it has none.
[[nodiscard]] SfntTable WriteWindowsMetrics(hb_face_t* face, uint16_t firstCode, uint16_t lastCode);

}  // namespace hdi
